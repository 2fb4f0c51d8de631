// How alike left and right are.
#pragma once

#include "core/RealTime.h"

#include <vector>

namespace Orvel {

/// Pearson correlation of successive windows (2048 samples at 44.1 kHz), smoothed per slice.
/// Unit: -1 opposite polarity, 0 unrelated or silent, +1 mono. Levels below 0.0001 count as
/// silence, so that dither does not look like stereo. Threads: analysing thread; `setSampleRate`
/// under the analysis lock.
class CorrelationBlock {
  public:
    CorrelationBlock() { setSampleRate(44100); }

    /// Hz. Starts a new window; the smoothed value stays. Throws std::bad_alloc.
    void setSampleRate(float sampleRate);
    /// Starts a new window and forgets the value.
    void reset() noexcept;

    /// Mean of the windows that were completed by these samples, or the last result.
    float Compute(const float* left, const float* right, int count) noexcept ORVEL_NONBLOCKING;
    /// One slice: `Compute`, then a step of 0.7 % towards its result.
    void feed(const float* left, const float* right, int count) noexcept ORVEL_NONBLOCKING;

    /// The smoothed correlation.
    float correlation() const noexcept { return correlation_; }
    /// Samples.
    int window() const noexcept { return static_cast<int>(windowLeft_.size()); }

  private:
    float correlateWindow() const noexcept;

    std::vector<float> windowLeft_;
    std::vector<float> windowRight_;
    std::size_t fill_ = 0;
    float lastResult_ = 0;
    float correlation_ = 0;
};

} // namespace Orvel
