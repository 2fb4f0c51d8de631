// The largest of the last milliseconds' samples, for every sample.
#pragma once

#include "core/RealTime.h"

#include <vector>

namespace Orvel {

/// Sliding maximum: each output is exactly the largest of the last `windowSamples` inputs, the
/// current one included; before the first input lie zeros. The cost per sample does not depend on
/// the window. Shape: one channel. Unit: any that is finite.
/// Threads: `process` on the analysing thread; everything else under the analysis lock.
/// Fails: std::bad_alloc from the setters.
/// Source: M. van Herk, Pattern Recognition Letters 13 (1992); J. Gil, M. Werman, IEEE PAMI 15
/// (1993). The window is the tail of the last full ring and the head of the current one: maxima
/// from each place to the end of the last ring are made once a ring, that of the head goes along.
class CBufferMaxEnvelope {
  public:
    CBufferMaxEnvelope();

    // Each starts over with zeros.
    /// Hz.
    void setSampleRate(float sampleRate);
    /// Milliseconds, rounded down to whole samples, at least one.
    void setWindow(float milliseconds);
    void clear() noexcept;

    /// `output` may be `input`.
    void process(const float* input, int count, float* output) noexcept ORVEL_NONBLOCKING;
    /// One sample.
    float step(float input) noexcept ORVEL_NONBLOCKING;

    int windowSamples() const { return windowSamples_; }

  private:
    void redimension();
    void finishRing() noexcept;

    float sampleRate_ = 44100.0F;
    float windowMs_ = 10.0F;
    int windowSamples_ = 1;
    /// Up to `writeIndex_` the inputs of this ring; from there on, for each place of the last ring,
    /// the maximum from it to the end. One entry more than the window, which stays the lowest.
    std::vector<float> ring_;
    int writeIndex_ = 0;
    float head_ = 0; // largest input of this ring so far
};

} // namespace Orvel
