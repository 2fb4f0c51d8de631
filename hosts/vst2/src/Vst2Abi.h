// The binary interface of VST 2.4, written from its public facts: records, opcodes and flags.
#pragma once

#include <cstddef>
#include <cstdint>

namespace vst2 {

struct AEffect;

/// What a host hands to the entry point; the plug-in asks everything through it.
using HostCallback = std::intptr_t (*)(AEffect* effect,
                                       std::int32_t opcode,
                                       std::int32_t index,
                                       std::intptr_t value,
                                       void* ptr,
                                       float opt);

using DispatcherProc = std::intptr_t (*)(AEffect* effect,
                                         std::int32_t opcode,
                                         std::int32_t index,
                                         std::intptr_t value,
                                         void* ptr,
                                         float opt);
using ProcessProc = void (*)(AEffect* effect, float** inputs, float** outputs, std::int32_t frames);
using ProcessDoubleProc = void (*)(AEffect* effect,
                                   double** inputs,
                                   double** outputs,
                                   std::int32_t frames);
using SetParameterProc = void (*)(AEffect* effect, std::int32_t index, float value);
using GetParameterProc = float (*)(AEffect* effect, std::int32_t index);

inline constexpr std::int32_t kEffectMagic = 0x56737450; // "VstP"

/// Four letters as one number, the first in the highest byte.
constexpr std::int32_t fourLetters(const char (&text)[5]) {
    std::uint32_t code = 0;
    for (int i = 0; i < 4; ++i)
        code = code << 8 | static_cast<std::uint8_t>(text[i]);
    return static_cast<std::int32_t>(code);
}

enum EffectFlags : std::int32_t {
    effFlagsHasEditor = 1 << 0,
    effFlagsCanReplacing = 1 << 4,
    effFlagsProgramChunks = 1 << 5,
    effFlagsIsSynth = 1 << 8,
    effFlagsNoSoundInStop = 1 << 9,
    effFlagsCanDoubleReplacing = 1 << 12,
};

/// From the host to the effect.
enum EffectOpcode : std::int32_t {
    effOpen = 0,
    effClose = 1,
    effSetProgram = 2,
    effGetProgram = 3,
    effSetProgramName = 4,
    effGetProgramName = 5,
    effGetParamLabel = 6,
    effGetParamDisplay = 7,
    effGetParamName = 8,
    effSetSampleRate = 10,
    effSetBlockSize = 11,
    effMainsChanged = 12,
    effEditGetRect = 13,
    effEditOpen = 14,
    effEditClose = 15,
    effEditIdle = 19,
    effIdentify = 22,
    effGetChunk = 23,
    effSetChunk = 24,
    effProcessEvents = 25,
    effCanBeAutomated = 26,
    effString2Parameter = 27,
    effGetProgramNameIndexed = 29,
    effGetInputProperties = 33,
    effGetOutputProperties = 34,
    effGetPlugCategory = 35,
    effSetSpeakerArrangement = 42,
    effSetBypass = 44,
    effGetEffectName = 45,
    effGetVendorString = 47,
    effGetProductString = 48,
    effGetVendorVersion = 49,
    effVendorSpecific = 50,
    effCanDo = 51,
    effGetTailSize = 52,
    effIdle = 53,
    effGetParameterProperties = 56,
    effKeysRequired = 57,
    effGetVstVersion = 58,
    effEditKeyDown = 59,
    effEditKeyUp = 60,
    effSetEditKnobMode = 61,
    effGetMidiProgramName = 62,
    effGetCurrentMidiProgram = 63,
    effGetMidiProgramCategory = 64,
    effHasMidiProgramsChanged = 65,
    effGetMidiKeyName = 66,
    effBeginSetProgram = 67,
    effEndSetProgram = 68,
    effGetSpeakerArrangement = 69,
    effShellGetNextPlugin = 70,
    effStartProcess = 71,
    effStopProcess = 72,
    effSetProcessPrecision = 77,
    effGetNumMidiInputChannels = 78,
    effGetNumMidiOutputChannels = 79,
};

/// From the effect to the host.
enum HostOpcode : std::int32_t {
    audioMasterAutomate = 0,
    audioMasterVersion = 1,
    audioMasterCurrentId = 2,
    audioMasterIdle = 3,
    audioMasterPinConnected = 4,
    audioMasterWantMidi = 6,
    audioMasterGetTime = 7,
    audioMasterProcessEvents = 8,
    audioMasterIOChanged = 13,
    audioMasterNeedIdle = 14,
    audioMasterSizeWindow = 15,
    audioMasterGetSampleRate = 16,
    audioMasterGetBlockSize = 17,
    audioMasterGetCurrentProcessLevel = 23,
    audioMasterGetAutomationState = 24,
    audioMasterGetVendorString = 32,
    audioMasterGetProductString = 33,
    audioMasterGetVendorVersion = 34,
    audioMasterVendorSpecific = 35,
    audioMasterCanDo = 37,
    audioMasterGetLanguage = 38,
    audioMasterGetDirectory = 41,
    audioMasterUpdateDisplay = 42,
    audioMasterBeginEdit = 43,
    audioMasterEndEdit = 44,
};

enum PlugCategory : std::int32_t {
    kPlugCategUnknown = 0,
    kPlugCategEffect = 1,
    kPlugCategSynth = 2,
    kPlugCategShell = 10,
};

enum TimeInfoFlags : std::int32_t {
    kVstTransportPlaying = 1 << 1,
    kVstPpqPosValid = 1 << 9,
    kVstTempoValid = 1 << 10,
    kVstBarsValid = 1 << 11,
    kVstTimeSigValid = 1 << 13,
};

enum PinFlags : std::int32_t { kVstPinIsActive = 1, kVstPinIsStereo = 2 };
enum EventType : std::int32_t { kVstMidiType = 1 };
enum ArrangementType : std::int32_t {
    kSpeakerArrUserDefined = -2,
    kSpeakerArrEmpty = -1,
    kSpeakerArrMono = 0,
    kSpeakerArrStereo = 1,
};

inline constexpr std::int32_t kVst24 = 2400;

#pragma pack(push, 8)

struct AEffect {
    std::int32_t magic;
    DispatcherProc dispatcher;
    ProcessProc process; // adds to the outputs; hosts of old
    SetParameterProc setParameter;
    GetParameterProc getParameter;
    std::int32_t numPrograms;
    std::int32_t numParams;
    std::int32_t numInputs;
    std::int32_t numOutputs;
    std::int32_t flags;
    std::intptr_t reserved1;
    std::intptr_t reserved2;
    std::int32_t initialDelay;
    std::int32_t realQualities;
    std::int32_t offQualities;
    float ioRatio;
    void* object;
    void* user;
    std::int32_t uniqueID;
    std::int32_t version;
    ProcessProc processReplacing;
    ProcessDoubleProc processDoubleReplacing;
    char future[56];
};

struct VstTimeInfo {
    double samplePos;  // always good
    double sampleRate; // always good
    double nanoSeconds;
    double ppqPos; // quarter notes
    double tempo;  // beats per minute
    double barStartPos;
    double cycleStartPos;
    double cycleEndPos;
    std::int32_t timeSigNumerator;
    std::int32_t timeSigDenominator;
    std::int32_t smpteOffset;
    std::int32_t smpteFrameRate;
    std::int32_t samplesToNextClock;
    std::int32_t flags; // TimeInfoFlags
};

struct VstEvent {
    std::int32_t type;
    std::int32_t byteSize;
    std::int32_t deltaFrames;
    std::int32_t flags;
    char data[16];
};

struct VstMidiEvent {
    std::int32_t type;
    std::int32_t byteSize;
    std::int32_t deltaFrames;
    std::int32_t flags;
    std::int32_t noteLength;
    std::int32_t noteOffset;
    std::uint8_t midiData[4];
    std::int8_t detune;
    std::uint8_t noteOffVelocity;
    std::uint8_t reserved1;
    std::uint8_t reserved2;
};

struct VstEvents {
    std::int32_t numEvents;
    std::intptr_t reserved;
    VstEvent* events[2]; // as many as numEvents says
};

struct VstPinProperties {
    char label[64];
    std::int32_t flags; // PinFlags
    std::int32_t arrangementType;
    char shortLabel[8];
    char future[48];
};

struct VstParameterProperties {
    float stepFloat;
    float smallStepFloat;
    float largeStepFloat;
    char label[64];
    std::int32_t flags;
    std::int32_t minInteger;
    std::int32_t maxInteger;
    std::int32_t stepInteger;
    std::int32_t largeStepInteger;
    char shortLabel[8];
    std::int16_t displayIndex;
    std::int16_t category;
    std::int16_t numParametersInCategory;
    std::int16_t reserved;
    char categoryLabel[24];
    char future[16];
};

struct VstSpeakerProperties {
    float azimuth;
    float elevation;
    float radius;
    float reserved;
    char name[64];
    std::int32_t type;
    char future[28];
};

struct VstSpeakerArrangement {
    std::int32_t type; // ArrangementType
    std::int32_t numChannels;
    VstSpeakerProperties speakers[8];
};

struct ERect {
    std::int16_t top;
    std::int16_t left;
    std::int16_t bottom;
    std::int16_t right;
};

struct VstKeyCode {
    std::int32_t character;
    std::uint8_t virt;
    std::uint8_t modifier;
};

#pragma pack(pop)

// A wrong size or place here is memory written in the host.
static_assert(sizeof(VstTimeInfo) == 88);
static_assert(offsetof(VstTimeInfo, tempo) == 32);
static_assert(offsetof(VstTimeInfo, timeSigNumerator) == 64);
static_assert(offsetof(VstTimeInfo, flags) == 84);
static_assert(sizeof(VstEvent) == 32);
static_assert(sizeof(VstMidiEvent) == 32);
static_assert(offsetof(VstMidiEvent, midiData) == 24);
static_assert(offsetof(VstMidiEvent, detune) == 28);
static_assert(sizeof(VstPinProperties) == 128);
static_assert(offsetof(VstPinProperties, flags) == 64);
static_assert(offsetof(VstPinProperties, shortLabel) == 72);
static_assert(sizeof(VstParameterProperties) == 152);
static_assert(offsetof(VstParameterProperties, label) == 12);
static_assert(offsetof(VstParameterProperties, flags) == 76);
static_assert(offsetof(VstParameterProperties, shortLabel) == 96);
static_assert(offsetof(VstParameterProperties, displayIndex) == 104);
static_assert(offsetof(VstParameterProperties, categoryLabel) == 112);
static_assert(sizeof(VstSpeakerProperties) == 112);
static_assert(sizeof(VstSpeakerArrangement) == 904);
static_assert(sizeof(ERect) == 8);

static_assert(sizeof(void*) != 8 || sizeof(AEffect) == 192);
static_assert(sizeof(void*) != 8 || offsetof(AEffect, dispatcher) == 8);
static_assert(sizeof(void*) != 8 || offsetof(AEffect, process) == 16);
static_assert(sizeof(void*) != 8 || offsetof(AEffect, setParameter) == 24);
static_assert(sizeof(void*) != 8 || offsetof(AEffect, getParameter) == 32);
static_assert(sizeof(void*) != 8 || offsetof(AEffect, numPrograms) == 40);
static_assert(sizeof(void*) != 8 || offsetof(AEffect, numParams) == 44);
static_assert(sizeof(void*) != 8 || offsetof(AEffect, numInputs) == 48);
static_assert(sizeof(void*) != 8 || offsetof(AEffect, numOutputs) == 52);
static_assert(sizeof(void*) != 8 || offsetof(AEffect, flags) == 56);
static_assert(sizeof(void*) != 8 || offsetof(AEffect, initialDelay) == 80);
static_assert(sizeof(void*) != 8 || offsetof(AEffect, object) == 96);
static_assert(sizeof(void*) != 8 || offsetof(AEffect, uniqueID) == 112);
static_assert(sizeof(void*) != 8 || offsetof(AEffect, processReplacing) == 120);
static_assert(sizeof(void*) != 8 || offsetof(AEffect, future) == 136);
static_assert(sizeof(void*) != 8 || offsetof(VstEvents, events) == 16);

} // namespace vst2
