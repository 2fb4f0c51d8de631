// Sliding RMS that does not drift.
#pragma once

#include "core/RealTime.h"

#include <cstdint>
#include <vector>

namespace Orvel {

/// RMS over the last `length` milliseconds. The sum of squares slides in integers, so it returns to
/// exactly 0 in digital silence however long it has run; the price is that squares are cut to
/// 1/20000000: a steady level reads 0.22 dB low at -63 dBFS, and nothing below -76.
/// Shape: one channel. Unit: linear amplitude; a full-scale sine reads 0.707, with doubled power 1.
/// Threads: `feed` on the analysing thread; everything else under the analysis lock.
/// Fails: std::bad_alloc from the setters.
class CFloatingRMS {
  public:
    // Each restarts the measurement. Times in milliseconds.
    void setSampleRate(float sampleRate);
    void setLength(float milliseconds);
    /// Longest window that will be asked for: sets the size of the ring.
    void setMaximumLength(float milliseconds);
    /// Twice the power: a full-scale sine then reads as its peak, as K-system meters want it.
    void setDoubledPower(bool doubled) noexcept { doubledPower_ = doubled; }

    void feed(const float* samples, int count) noexcept ORVEL_NONBLOCKING;
    void clear() noexcept;

    float value() const noexcept { return value_; }
    /// Samples.
    int window() const noexcept { return window_; }

  private:
    void redimension();
    void updateValue() noexcept;

    float sampleRate_ = 44100.0F;
    float lengthMs_ = 10.0F;
    float maximumMs_ = 1.0F;
    bool doubledPower_ = false;
    std::vector<std::uint32_t> ring_; // squares in fixed point; the first `window_` are in use
    int window_ = 1;
    int position_ = 0;
    std::uint64_t sum_ = 0; // of the entries in use
    float value_ = 0;
};

} // namespace Orvel
