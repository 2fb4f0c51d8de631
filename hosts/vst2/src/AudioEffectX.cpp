// Opcodes to operations, questions to the host, and the border no exception crosses.
#include "AudioEffectX.h"

#include <climits>
#include <cstring>
#include <utility>

namespace vst2 {

AudioEffectX::AudioEffectX(HostCallback host, std::int32_t numPrograms, std::int32_t numParams)
    : host_(host) {
    effect_.magic = kEffectMagic;
    effect_.dispatcher = &dispatcherProc;
    effect_.process = &processProc;
    effect_.setParameter = &setParameterProc;
    effect_.getParameter = &getParameterProc;
    effect_.processReplacing = &processReplacingProc;
    effect_.numPrograms = numPrograms;
    effect_.numParams = numParams;
    effect_.flags = effFlagsCanReplacing;
    effect_.ioRatio = 1.0F;
    effect_.object = this;
    effect_.version = 1;
}

AudioEffectX::~AudioEffectX() = default;

void AudioEffectX::setEditor(std::unique_ptr<AEffEditor> editor) {
    editor_ = std::move(editor);
    setFlag(effFlagsHasEditor, editor_ != nullptr);
}

void AudioEffectX::setFlag(EffectFlags flag, bool on) noexcept {
    effect_.flags = on ? effect_.flags | flag : effect_.flags & ~flag;
}

// --- from the host ------------------------------------------------------------------------------

AudioEffectX* AudioEffectX::from(AEffect* effect) noexcept {
    return effect == nullptr ? nullptr : static_cast<AudioEffectX*>(effect->object);
}

std::intptr_t AudioEffectX::dispatcherProc(AEffect* effect,
                                           std::int32_t opcode,
                                           std::int32_t index,
                                           std::intptr_t value,
                                           void* ptr,
                                           float opt) noexcept {
    AudioEffectX* self = from(effect);
    if (self == nullptr) return 0;
    try {
        if (opcode == effClose) {
            // A host that calls back in while the effect dies meets an effect without an object.
            effect->object = nullptr;
            const std::unique_ptr<AudioEffectX> last(self);
            last->close();
            return 1;
        }
        return self->dispatch(opcode, index, value, ptr, opt);
    } catch (...) {
        return 0;
    }
}

void AudioEffectX::processProc(AEffect* effect,
                               float** inputs,
                               float** outputs,
                               std::int32_t frames) noexcept {
    AudioEffectX* self = from(effect);
    if (self == nullptr) return;
    try {
        self->processAccumulating(inputs, outputs, frames);
    } catch (...) { // the block is lost, the host is not
    }
}

void AudioEffectX::processReplacingProc(AEffect* effect,
                                        float** inputs,
                                        float** outputs,
                                        std::int32_t frames) noexcept {
    AudioEffectX* self = from(effect);
    if (self == nullptr) return;
    try {
        self->processReplacing(inputs, outputs, frames);
    } catch (...) { // the block is lost, the host is not
    }
}

void AudioEffectX::setParameterProc(AEffect* effect, std::int32_t index, float value) noexcept {
    AudioEffectX* self = from(effect);
    if (self == nullptr) return;
    try {
        self->setParameter(index, value);
    } catch (...) { // the old value stays
    }
}

float AudioEffectX::getParameterProc(AEffect* effect, std::int32_t index) noexcept {
    AudioEffectX* self = from(effect);
    if (self == nullptr) return 0;
    try {
        return self->getParameter(index);
    } catch (...) {
        return 0;
    }
}

std::intptr_t AudioEffectX::dispatch(
    std::int32_t opcode, std::int32_t index, std::intptr_t value, void* ptr, float opt) {
    switch (opcode) {
    case effOpen:
        open();
        return 0;
    case effMainsChanged:
        if (value != 0)
            resume();
        else
            suspend();
        return 0;
    case effSetSampleRate:
        setSampleRate(opt);
        return 0;
    case effSetBlockSize:
        if (value > 0 && value <= INT_MAX) setBlockSize(static_cast<std::int32_t>(value));
        return 0;
    case effSetBypass:
        return setBypass(value != 0) ? 1 : 0;
    case effSetSpeakerArrangement:
        return setSpeakerArrangement(reinterpret_cast<const VstSpeakerArrangement*>(value),
                                     static_cast<const VstSpeakerArrangement*>(ptr))
                   ? 1
                   : 0;
    case effGetSpeakerArrangement:
        // Nothing to tell beyond the pin properties.
        if (value != 0) *reinterpret_cast<VstSpeakerArrangement**>(value) = nullptr;
        if (ptr != nullptr) *static_cast<VstSpeakerArrangement**>(ptr) = nullptr;
        return 0;

    case effSetProgram:
        if (value >= 0 && value < effect_.numPrograms) setProgram(static_cast<std::int32_t>(value));
        return 0;
    case effGetProgram:
        return getProgram();
    case effSetProgramName:
        if (ptr != nullptr) setProgramName(static_cast<const char*>(ptr));
        return 0;

    case effGetChunk:
        return ptr == nullptr ? 0 : getChunk(static_cast<void**>(ptr), index != 0);
    case effSetChunk:
        return ptr == nullptr || value <= 0 ? 0 : setChunk(ptr, value, index != 0);
    case effProcessEvents:
        return ptr != nullptr && processEvents(*static_cast<const VstEvents*>(ptr)) ? 1 : 0;

    case effCanBeAutomated:
        return canParameterBeAutomated(index) ? 1 : 0;
    case effString2Parameter:
        return string2parameter(index, static_cast<const char*>(ptr)) ? 1 : 0;
    case effGetParameterProperties:
        return ptr != nullptr &&
                       getParameterProperties(index, *static_cast<VstParameterProperties*>(ptr))
                   ? 1
                   : 0;
    case effGetInputProperties:
        return ptr != nullptr && getInputProperties(index, *static_cast<VstPinProperties*>(ptr))
                   ? 1
                   : 0;
    case effGetOutputProperties:
        return ptr != nullptr && getOutputProperties(index, *static_cast<VstPinProperties*>(ptr))
                   ? 1
                   : 0;

    case effIdentify:
        return fourLetters("NvEf");
    case effGetPlugCategory:
        return getPlugCategory();
    case effGetVendorVersion:
        return getVendorVersion();
    case effVendorSpecific:
        return vendorSpecific(index, value, ptr, opt);
    case effCanDo:
        return ptr == nullptr ? 0 : canDo(static_cast<const char*>(ptr));
    case effGetTailSize:
        return getGetTailSize();
    case effKeysRequired:
        return 1; // this old question is answered upside down: 1 means that no keys are needed
    case effGetVstVersion:
        return kVst24;
    case effGetCurrentMidiProgram:
        return getCurrentMidiProgram();
    case effGetNumMidiInputChannels:
        return getNumMidiInputChannels();
    case effGetNumMidiOutputChannels:
        return getNumMidiOutputChannels();
    case effIdle:
        idle();
        return 1; // go on calling

    case effGetProgramName:
    case effGetProgramNameIndexed:
    case effGetParamLabel:
    case effGetParamDisplay:
    case effGetParamName:
    case effGetEffectName:
    case effGetVendorString:
    case effGetProductString:
    case effShellGetNextPlugin:
        return ptr == nullptr ? 0 : dispatchText(opcode, index, static_cast<char*>(ptr));

    case effEditGetRect:
    case effEditOpen:
    case effEditClose:
    case effEditIdle:
    case effEditKeyDown:
    case effEditKeyUp:
    case effSetEditKnobMode:
        return dispatchEditor(opcode, index, value, ptr, opt);

    default:
        // What is not known, and what this class has nothing to say to: MIDI programs and keys,
        // program change brackets, processing brackets, 64-bit processing.
        return 0;
    }
}

std::intptr_t AudioEffectX::dispatchText(std::int32_t opcode, std::int32_t index, char* text) {
    *text = 0; // whatever happens, the host finds a text
    switch (opcode) {
    case effGetProgramName:
        getProgramName(text);
        return 0;
    case effGetProgramNameIndexed:
        return getProgramNameIndexed(index, text) ? 1 : 0;
    case effGetParamLabel:
        getParameterLabel(index, text);
        return 0;
    case effGetParamDisplay:
        getParameterDisplay(index, text);
        return 0;
    case effGetParamName:
        getParameterName(index, text);
        return 0;
    case effGetEffectName:
        return getEffectName(text) ? 1 : 0;
    case effGetVendorString:
        return getVendorString(text) ? 1 : 0;
    case effGetProductString:
        return getProductString(text) ? 1 : 0;
    case effShellGetNextPlugin:
        return getNextShellPlugin(text);
    default:
        return 0;
    }
}

std::intptr_t AudioEffectX::dispatchEditor(
    std::int32_t opcode, std::int32_t index, std::intptr_t value, void* ptr, float opt) {
    if (opcode == effEditIdle) {
        idle();
        if (editor_ != nullptr) editor_->idle();
        return 0;
    }
    if (editor_ == nullptr) {
        if (opcode == effEditGetRect && ptr != nullptr) *static_cast<ERect**>(ptr) = nullptr;
        return 0;
    }
    // NaN and what no byte holds count as no modifier.
    const auto modifier =
        static_cast<std::uint8_t>(opt >= 0.0F && opt <= 255.0F ? static_cast<int>(opt) : 0);
    const VstKeyCode key{index, static_cast<std::uint8_t>(value), modifier};
    switch (opcode) {
    case effEditGetRect:
        return ptr != nullptr && editor_->getRect(static_cast<ERect**>(ptr)) ? 1 : 0;
    case effEditOpen:
        return ptr != nullptr && editor_->open(ptr) ? 1 : 0;
    case effEditClose:
        editor_->close();
        return 0;
    case effEditKeyDown:
        return editor_->onKeyDown(key) ? 1 : 0;
    case effEditKeyUp:
        return editor_->onKeyUp(key) ? 1 : 0;
    case effSetEditKnobMode:
        return editor_->setKnobMode(static_cast<std::int32_t>(value)) ? 1 : 0;
    default:
        return 0;
    }
}

// --- to the host --------------------------------------------------------------------------------

std::intptr_t AudioEffectX::askHost(
    std::int32_t opcode, std::int32_t index, std::intptr_t value, void* ptr, float opt) {
    return host_ == nullptr ? 0 : host_(&effect_, opcode, index, value, ptr, opt);
}

bool AudioEffectX::askHostForText(std::int32_t opcode, char* text) {
    if (text == nullptr) return false;
    char answer[256] = {}; // hosts write more than the 64 bytes they should
    const bool given = askHost(opcode, 0, 0, answer) != 0;
    answer[sizeof answer - 1] = 0;
    copyText(text, answer, kNameTextRoom);
    return given;
}

std::int32_t AudioEffectX::getCurrentUniqueId() {
    return static_cast<std::int32_t>(askHost(audioMasterCurrentId));
}

std::int32_t AudioEffectX::canHostDo(const char* text) {
    char question[kNameTextRoom]; // a copy: the host gets a pointer it could write through
    copyText(question, text, sizeof question);
    return static_cast<std::int32_t>(askHost(audioMasterCanDo, 0, 0, question));
}

bool AudioEffectX::getHostVendorString(char* text) {
    return askHostForText(audioMasterGetVendorString, text);
}

bool AudioEffectX::getHostProductString(char* text) {
    return askHostForText(audioMasterGetProductString, text);
}

std::int32_t AudioEffectX::getHostVendorVersion() {
    return static_cast<std::int32_t>(askHost(audioMasterGetVendorVersion));
}

const VstTimeInfo* AudioEffectX::getTimeInfo(std::int32_t filter) {
    return reinterpret_cast<const VstTimeInfo*>(askHost(audioMasterGetTime, 0, filter));
}

void AudioEffectX::masterIdle() { askHost(audioMasterIdle); }

void AudioEffectX::needIdle() { askHost(audioMasterNeedIdle); }

void AudioEffectX::wantEvents(std::int32_t filter) { askHost(audioMasterWantMidi, 0, filter); }

bool AudioEffectX::updateDisplay() { return askHost(audioMasterUpdateDisplay) != 0; }

bool AudioEffectX::ioChanged() { return askHost(audioMasterIOChanged) != 0; }

bool AudioEffectX::beginEdit(std::int32_t index) {
    return askHost(audioMasterBeginEdit, index) != 0;
}

bool AudioEffectX::endEdit(std::int32_t index) { return askHost(audioMasterEndEdit, index) != 0; }

void AudioEffectX::tellAutomation(std::int32_t index, float value) {
    askHost(audioMasterAutomate, index, 0, nullptr, value);
}

} // namespace vst2
