// What the host hands to the render function for each instance.
#pragma once

#include "AAX.h"

#include <cstddef>
#include <cstdint>

class AAX_IMIDINode;
class Vardo_AAX_Wrapper;

namespace Vardo::Aax {

/// One pointer for each field of the algorithm, in the order in which Describe.cpp declares them.
/// The host fills it before each call; what a pointer leads to is the host's.
struct AlgorithmContext {
    void* reserved;              ///< a data port that carries nothing
    float** inputs;              ///< channel pointers, the side chain's among them
    float** outputs;             ///< channel pointers
    std::int32_t* sidechain;     ///< its place among the inputs, 0 for none
    std::int32_t* frames;        ///< samples in this block
    float* sampleRate;           ///< Hz
    AAX_IMIDINode* midiIn;       ///< only with an instrument; else private bytes
    AAX_IMIDINode* transport;    ///< a node that only leads to the host's transport
    Vardo_AAX_Wrapper** wrapper; ///< private data: whose block this is
};

enum Field : AAX_CFieldIndex {
    kReservedField,
    kInputsField,
    kOutputsField,
    kSidechainField,
    kFramesField,
    kSampleRateField,
    kMidiInField,
    kTransportField,
    kWrapperField,
    kNumFields,
};
static_assert(sizeof(AlgorithmContext) == kNumFields * sizeof(void*));
static_assert(offsetof(AlgorithmContext, wrapper) == kWrapperField * sizeof(void*));

/// Samples. The longest block of a host's native path, and what the plug-in is told; a longer one
/// is rendered piece by piece.
inline constexpr int kAnnouncedBlock = 1024;

} // namespace Vardo::Aax
