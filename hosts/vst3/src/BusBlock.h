// The buses of one block, as the pairs of channels that a plug-in knows.
#pragma once

#include "hosting/HostBlock.h"
#include "pluginterfaces/vst/ivstaudioprocessor.h"

namespace Vardo {

/// Pairs: one for each bus, main and aux, that the effect has.
struct BusShape {
    int inputs = 0;
    int outputs = 0;
};

/// The host's own pointers, good for one call. Buses and channels may be missing, null or more than
/// the effect has; what a host says of their number is bounded, and outputs may be the inputs.
/// Threads: audio thread.
class BusBlock {
  public:
    static constexpr int kMostPairs = 16;
    /// Of one bus; the host has as many silence flags.
    static constexpr int kMostChannels = 64;

    /// `shape` has at most kMostPairs on each side.
    BusBlock(Steinberg::Vst::ProcessData& data, BusShape shape) noexcept ORVEL_NONBLOCKING;

    /// A mono bus brings its channel as both of its pair, and takes the left one of it.
    const HostBlock& pairs() const noexcept { return block_; }
    bool hasInput(int pair) const noexcept { return block_.input(2 * pair) != nullptr; }
    /// Some channel has samples or room for them. Without, the host only flushes parameters.
    bool hasChannels() const noexcept { return hasChannels_; }

    /// The channels that no pair covers pass through, or are silent without an input like them.
    /// After the pairs, on whose channels no such output may lie.
    void passTheRest() noexcept ORVEL_NONBLOCKING;
    /// No output is marked silent.
    void clearSilenceFlags() noexcept ORVEL_NONBLOCKING;

  private:
    using Bus = Steinberg::Vst::AudioBusBuffers;
    static float* channel(const Bus& bus, int index) noexcept;
    void passTheRest(int bus) noexcept;

    const Bus* inputs_;
    Bus* outputs_;
    int inputCount_;
    int outputCount_;
    BusShape shape_;
    float* inputPointers_[2 * kMostPairs] = {};
    float* outputPointers_[2 * kMostPairs] = {};
    HostBlock block_{};
    bool hasChannels_ = false;
};

} // namespace Vardo
