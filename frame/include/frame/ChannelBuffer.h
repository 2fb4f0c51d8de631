// Several channels of samples of the same length.
#pragma once

#include "core/CriticalSection.h"
#include "core/RealTime.h"

#include <memory>

namespace Vardo {

/// The multichannel buffer of the audio path. Channels are aligned for vector code.
/// Unit: samples, 32-bit floats. Threads: as its owner says; the lock is there for owners that want
/// one, and no operation here takes it.
class CNChannelBuffer {
  public:
    /// Bytes. A cache line, and enough for every vector instruction set.
    static constexpr std::size_t kAlignment = 64;

    CNChannelBuffer() = default;
    CNChannelBuffer(int samples, int channels) { resize(samples, channels); }
    virtual ~CNChannelBuffer();
    CNChannelBuffer(const CNChannelBuffer&) = delete;
    CNChannelBuffer& operator=(const CNChannelBuffer&) = delete;

    /// Makes `channels` silent channels of `samples` samples; what was there is lost, even when the
    /// size stays the same. Negative numbers count as 0. Fails: throws std::bad_alloc and leaves
    /// the buffer as it was.
    void resize(int samples, int channels);
    /// Exchanges contents with another buffer, without copying samples.
    void swap(CNChannelBuffer& other) noexcept;

    void clear() noexcept ORVEL_NONBLOCKING;
    /// At most the first `samples` samples of each channel.
    void clear(int samples) noexcept ORVEL_NONBLOCKING;

    /// Copies as many channels and samples as both sides have.
    void copyFrom(const float* const* source, int channels, int samples) noexcept ORVEL_NONBLOCKING;
    void copyTo(float* const* target, int channels, int samples) const noexcept ORVEL_NONBLOCKING;

    /// Null when there is no such channel.
    float* channel(int index) noexcept ORVEL_NONBLOCKING {
        return index < 0 || index >= numChannels_ ? nullptr : channels_[index];
    }
    const float* channel(int index) const noexcept ORVEL_NONBLOCKING {
        return index < 0 || index >= numChannels_ ? nullptr : channels_[index];
    }
    float** channels() noexcept ORVEL_NONBLOCKING { return channels_.get(); }
    int numChannels() const noexcept { return numChannels_; }
    int numSamples() const noexcept { return numSamples_; }

    Core::Threads::CriticalSection& lock() noexcept { return lock_; }

  private:
    struct AlignedDelete {
        void operator()(float* samples) const noexcept;
    };

    std::unique_ptr<float*[]> channels_;
    std::unique_ptr<float[], AlignedDelete> storage_; // all channels, one after the other
    int numChannels_ = 0;
    int numSamples_ = 0;
    Core::Threads::CriticalSection lock_;
};

} // namespace Vardo
