// One block of audio as a host hands it over, and the copies between it and our buffers.
#pragma once

#include "core/RealTime.h"
#include "frame/ChannelBuffer.h"

namespace Vardo {

enum class OutputMode {
    replace,
    add, ///< to what the outputs hold
};

/// The host's own pointers, good for one call. Either array and each channel may be null: a null
/// input is silence, a null output is not written. Outputs may be the inputs.
struct HostBlock {
    float** inputs;
    int inputChannels;
    float** outputs;
    int outputChannels;
    int frames;
    OutputMode mode;

    /// Null also for a channel the host did not bring.
    const float* input(int channel) const noexcept {
        return inputs == nullptr || channel >= inputChannels ? nullptr : inputs[channel];
    }
    float* output(int channel) const noexcept {
        return outputs == nullptr || channel >= outputChannels ? nullptr : outputs[channel];
    }

    /// Fills every channel of `buffer`: a mono source goes to both channels of the first pair, and
    /// what the host does not bring is silent. `buffer` has room for the frames.
    void copyInputsTo(CNChannelBuffer& buffer) const noexcept ORVEL_NONBLOCKING;
    /// As many channels as both sides have.
    void copyOutputsFrom(const CNChannelBuffer& buffer) const noexcept ORVEL_NONBLOCKING;
    /// Inputs straight to outputs, for a block that the plug-in does not get to see.
    void passThrough() const noexcept ORVEL_NONBLOCKING;

  private:
    void write(int channel, int offset, const float* samples, int count) const noexcept;
};

} // namespace Vardo
