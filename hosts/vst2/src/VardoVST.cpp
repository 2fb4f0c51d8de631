// Construction and what the host asks on its main thread.
#include "VardoVST.h"

#include "VardoVSTEditor.h"
#include "core/Strings.h"
#include "frame/PluginModule.h"
#include "frame/PluginParameter.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstring>

namespace Vardo {

namespace {
// From this version on the one host with a trouble takes a side-chain pair.
constexpr const char* kNoSidechainHost = "cubase";
constexpr int kNoSidechainHostFixed = 7000;

// Host side of the plug-in's channel counts.
bool fits(const vst2::VstSpeakerArrangement& arrangement, int pairs) {
    using namespace vst2;
    const int channels = arrangement.numChannels;
    if (channels == 0) return pairs == 0;
    const bool known = arrangement.type == kSpeakerArrMono ||
                       arrangement.type == kSpeakerArrStereo ||
                       arrangement.type == kSpeakerArrUserDefined;
    return known && pairs > 0 && (channels == 1 || channels == 2);
}
} // namespace

vst2::AEffect* createEffect(vst2::HostCallback host) noexcept {
    try {
        if (host == nullptr) return nullptr;
        if (host(nullptr, vst2::audioMasterVersion, 0, 0, nullptr, 0) == 0) return nullptr;
        return std::make_unique<VardoVST>(host).release()->getAeffect();
    } catch (...) {
        return nullptr;
    }
}

VardoVST::VardoVST(vst2::HostCallback host)
    : AudioEffectX(host, 1, 0) {
    changes_.claimThread();
    getPluginDescriptions(records_);
    if (!records_.empty()) record_ = records_.front();

    const std::uint32_t id = chooseId();
    if (id == 0) return;
    plugin_.reset(createPlugin(this, static_cast<int>(id)));
    const auto found = std::find_if(records_.begin(), records_.end(),
                                    [id](const auto& record) { return record.uniqueId == id; });
    if (found != records_.end()) record_ = *found;
    if (plugin_ == nullptr) return;

    describe();
    parameters_.build(*plugin_);
    setNumParams(parameters_.size());
    setNumPrograms(std::max(record_.programs, 0));
    if (IPluginEditor* editor = plugin_->getEditor())
        setEditor(std::make_unique<CVardoVST2_Editor>(editor));
    plugin_->setSampleRate(static_cast<double>(getSampleRate()));
    setBlockSize(getBlockSize());
}

VardoVST::~VardoVST() {
    setEditor(nullptr); // the window's owner goes before the plug-in it shows
    plugin_.reset();
}

std::uint32_t VardoVST::chooseId() {
    if (records_.empty()) return 0;
    const std::int32_t wanted = getCurrentUniqueId();
    if (!isShell()) return records_.front().uniqueId;
    setUniqueID(0);
    return canHostDo("shellCategory") == 1 ? static_cast<std::uint32_t>(wanted)
                                           : records_.front().uniqueId;
}

void VardoVST::describe() {
    category_ = vst2::kPlugCategUnknown;
    setInitialDelay(std::max(plugin_->getLatency(), 0));
    setUniqueID(static_cast<std::int32_t>(record_.uniqueId));
    inputPairs_ = std::max(record_.inputPairs, 0) + (wantsSidechainPair() ? 1 : 0);
    outputPairs_ = std::max(record_.outputPairs, 0);
    inputChannels_ = 2 * inputPairs_;
    outputChannels_ = 2 * outputPairs_;
    setNumInputs(inputChannels_);
    setNumOutputs(outputChannels_);
    if (record_.category == kCategorySynth && !isShell()) {
        isSynth(true);
        category_ = vst2::kPlugCategSynth;
    }
    programsAreChunks(true); // the chunk is all the state a host keeps
    canDoubleReplacing(false);
}

bool VardoVST::wantsSidechainPair() {
    if (!record_.hasSidechain) return false;
    char product[vst2::kNameTextRoom] = {};
    AudioEffectX::getHostProductString(product);
    return std::strcmp(product, kNoSidechainHost) != 0 ||
           getHostVendorVersion() >= kNoSidechainHostFixed;
}

// --- life ---------------------------------------------------------------------------------------

void VardoVST::open() { changes_.claimThread(); }

void VardoVST::suspend() {
    if (plugin_ == nullptr) return;
    plugin_->reset();
    deliverChanges();
}

void VardoVST::resume() {
    if (plugin_ == nullptr) return;
    if (pairsChanged_.exchange(false)) {
        inputChannels_ = 2 * inputPairs_;
        outputChannels_ = 2 * outputPairs_;
        followChannels();
    }
    plugin_->reset();
    if (isSynth() || canDo("receiveVstMidiEvent") == 1) wantEvents(1);
    needIdle();
    deliverChanges();
}

void VardoVST::idle() {
    changes_.claimThread();
    deliverChanges();
}

void VardoVST::setSampleRate(float rate) {
    if (!std::isfinite(rate) || rate <= 0) return;
    AudioEffectX::setSampleRate(rate);
    if (plugin_ != nullptr) plugin_->setSampleRate(static_cast<double>(rate));
}

void VardoVST::setBlockSize(std::int32_t frames) {
    if (frames <= 0 || frames > kLargestBlock) return;
    if (const auto inside = gate_.enter()) announceBlockSize(frames);
}

bool VardoVST::setSpeakerArrangement(const vst2::VstSpeakerArrangement* input,
                                     const vst2::VstSpeakerArrangement* output) {
    if (plugin_ == nullptr || (input == nullptr && output == nullptr)) return false;
    if (input != nullptr && !fits(*input, inputPairs_)) return false;
    if (output != nullptr && !fits(*output, outputPairs_)) return false;
    if (input != nullptr) inputChannels_ = input->numChannels;
    if (output != nullptr) outputChannels_ = output->numChannels;
    pairsChanged_ = false;
    followChannels();
    return true;
}

bool VardoVST::setBypass(bool bypassed) {
    bypassed_ = bypassed;
    if (bypassed)
        suspend();
    else
        resume();
    return true;
}

int VardoVST::inputBufferChannels() const noexcept {
    return std::max(2 * inputPairs_, std::max(inputChannels_.load(), 2));
}

int VardoVST::outputBufferChannels() const noexcept {
    return std::max(2 * outputPairs_, std::max(outputChannels_.load(), 2));
}

void VardoVST::resizeBuffers(int frames) {
    CNChannelBuffer input(frames, inputBufferChannels());
    CNChannelBuffer output(frames, outputBufferChannels());
    input_.swap(input);
    output_.swap(output);
}

void VardoVST::announceBlockSize(int frames) {
    AudioEffectX::setBlockSize(frames);
    if (plugin_ == nullptr) return;
    plugin_->setBlockSize(frames);
    resizeBuffers(frames);
}

void VardoVST::followChannels() {
    if (const auto inside = gate_.enter()) resizeBuffers(getBlockSize());
}

// --- parameters and state -----------------------------------------------------------------------

void VardoVST::setParameter(std::int32_t index, float value) {
    IPluginParameter* parameter = parameters_.parameter(index);
    if (parameter == nullptr || !std::isfinite(value)) return;
    const ParameterMap::HostCall mark(parameters_, index);
    parameter->setNormalizedValue(static_cast<double>(value), kFromHost);
}

float VardoVST::getParameter(std::int32_t index) {
    IPluginParameter* parameter = parameters_.parameter(index);
    return parameter == nullptr ? 0.0F : parameter->getNormalizedValue();
}

void VardoVST::getParameterLabel(std::int32_t index, char* label) {
    IPluginParameter* parameter = parameters_.parameter(index);
    vst2::copyText(label, parameter == nullptr ? "" : parameter->getUnitText(),
                   vst2::kParameterTextRoom);
}

void VardoVST::getParameterDisplay(std::int32_t index, char* text) {
    IPluginParameter* parameter = parameters_.parameter(index);
    Core::CStringBufferd<128> display;
    if (parameter != nullptr)
        parameter->getDisplayText(static_cast<double>(parameter->getNormalizedValue()), display);
    vst2::copyText(text, display.c_str(), vst2::kParameterTextRoom);
}

void VardoVST::getParameterName(std::int32_t index, char* text) {
    IPluginParameter* parameter = parameters_.parameter(index);
    vst2::copyText(text, parameter == nullptr ? "" : parameter->getNameText(),
                   vst2::kParameterTextRoom);
}

bool VardoVST::canParameterBeAutomated(std::int32_t index) {
    return parameters_.parameter(index) != nullptr;
}

bool VardoVST::string2parameter(std::int32_t index, const char* text) {
    IPluginParameter* parameter = parameters_.parameter(index);
    if (parameter == nullptr) return false;
    if (text == nullptr) return true;
    const Core::CStringBufferd<128> typed(text);
    const ParameterMap::HostCall mark(parameters_, index);
    parameter->setDisplayText(typed);
    return true;
}

bool VardoVST::getParameterProperties(std::int32_t index, vst2::VstParameterProperties& p) {
    IPluginParameter* parameter = parameters_.parameter(index);
    if (parameter == nullptr) return false;
    p = {};
    p.displayIndex = static_cast<std::int16_t>(std::min(index, SHRT_MAX));
    vst2::copyText(p.label, parameter->getNameText(), sizeof p.label);
    vst2::copyText(p.shortLabel, parameter->getNameText(), sizeof p.shortLabel);
    return true;
}

std::intptr_t VardoVST::getChunk(void** data, bool /*isPreset*/) {
    *data = nullptr;
    if (plugin_ == nullptr) return 0;
    // Before, not after: a host told of changes may read the state itself, which moves the memory.
    deliverChanges();
    return plugin_->getChunk(data);
}

std::intptr_t VardoVST::setChunk(const void* data, std::intptr_t size, bool /*isPreset*/) {
    if (plugin_ == nullptr || size > INT_MAX) return 0;
    plugin_->setChunk(data, static_cast<int>(size));
    deliverChanges();
    return size;
}

// --- texts and abilities ------------------------------------------------------------------------

bool VardoVST::getInputProperties(std::int32_t index, vst2::VstPinProperties& pin) {
    if (plugin_ == nullptr || index < 0 || index >= 2 * inputPairs_) return false;
    pin = {};
    pin.flags = vst2::kVstPinIsActive | vst2::kVstPinIsStereo;
    pin.arrangementType = vst2::kSpeakerArrStereo;
    return true;
}

bool VardoVST::getOutputProperties(std::int32_t index, vst2::VstPinProperties& pin) {
    if (plugin_ == nullptr || index < 0 || index >= 2 * outputPairs_) return false;
    pin = {};
    pin.flags = vst2::kVstPinIsActive | vst2::kVstPinIsStereo;
    pin.arrangementType = vst2::kSpeakerArrStereo;
    char name[vst2::kNameTextRoom + 1] = {};
    const bool named = plugin_->getOutputPinName(index, name);
    vst2::copyText(pin.label, named ? name : record_.effectName.c_str(), sizeof pin.label);
    return true;
}

bool VardoVST::getEffectName(char* name) {
    vst2::copyText(name, record_.effectName.c_str(), vst2::kNameTextRoom);
    return true;
}

bool VardoVST::getVendorString(char* text) {
    vst2::copyText(text, record_.vendorName.c_str(), vst2::kNameTextRoom);
    return true;
}

bool VardoVST::getProductString(char* text) {
    vst2::copyText(text, record_.productName.c_str(), vst2::kNameTextRoom);
    return true;
}

std::int32_t VardoVST::getVendorVersion() {
    return static_cast<std::int32_t>(record_.versionNumber);
}

std::int32_t VardoVST::getNextShellPlugin(char* name) {
    *name = 0;
    if (plugin_ != nullptr || !isShell()) return 0;
    const auto index = static_cast<std::size_t>(shellIndex_.load());
    if (index >= records_.size()) {
        shellIndex_ = 0;
        return 0;
    }
    shellIndex_ = static_cast<int>(index) + 1;
    vst2::copyText(name, records_[index].effectName.c_str(), vst2::kNameTextRoom);
    return static_cast<std::int32_t>(records_[index].uniqueId);
}

std::intptr_t
VardoVST::vendorSpecific(std::int32_t index, std::intptr_t value, void* /*ptr*/, float opt) {
    // The mouse wheel, as hosts send it since before there was an opcode: with either case of A.
    constexpr std::int32_t kCaseBit = 0x20;
    const bool wheel =
        value == vst2::fourLetters("Whee") && (index & ~kCaseBit) == vst2::fourLetters("stCA");
    if (!wheel) return 0;
    if (getEditor() != nullptr && std::isfinite(opt)) getEditor()->onWheel(opt);
    return 1;
}

std::int32_t VardoVST::canDo(const char* text) {
    const auto asks = [text](const char* ability) { return std::strcmp(text, ability) == 0; };
    if (asks("receiveVstMidiEvent") || asks("sendVstMidiEvent") || asks("receiveVstEvents"))
        return record_.category == kCategoryInstrument || record_.category == kCategorySynth ? 1
                                                                                             : 0;
    return asks("receiveVstTimeInfo") || asks("bypass") ? 1 : 0;
}

std::int32_t VardoVST::getPlugCategory() { return isSynth() ? vst2::kPlugCategSynth : category_; }

} // namespace Vardo
