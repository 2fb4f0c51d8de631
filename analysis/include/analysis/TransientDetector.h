// Finds where something loud begins.
#pragma once

#include "analysis/BufferMaxEnvelope.h"
#include "analysis/PeakFollower.h"
#include "core/RealTime.h"

namespace Orvel {

/// A transient is where a fast follower of the 10 ms peak envelope has run away from a slow one by
/// more than `1 - sensitivity` of itself. After a mark (and at the start) none is set for `holdMs`.
/// Levels of -70 dBFS and below count as silence.
/// Shape: two channels, the louder counts. Unit: linear amplitude, 1.0 is full scale.
/// Threads: `process` on the analysing thread; everything else under the analysis lock.
/// Fails: std::bad_alloc from `setSampleRate`.
class CTransientDetector {
  public:
    CTransientDetector();

    /// Hz. The envelope starts over; followers and the distance to the last mark go on.
    void setSampleRate(float sampleRate);
    /// Silence behind, and the next onset is marked at once.
    void reset() noexcept;

    /// Scans a slice. `marks` gets 1.0 at each transient and 0 elsewhere. Gives the offset of the
    /// first, or -1.
    int process(const float* left,
                const float* right,
                int count,
                float* marks) noexcept ORVEL_NONBLOCKING;

    /// No second mark within so many samples.
    int holdSamples() const { return holdSamples_; }

  private:
    int scan(const float* envelope, int count, float* marks) noexcept;

    float sampleRate_ = 44100.0F;
    float sensitivity_ = 0.4875F;
    float holdMs_ = 75.0F;
    int holdSamples_ = 0;
    int samplesSinceMark_ = 0; // stops at holdSamples_
    CBufferMaxEnvelope envelope_;
    PeakFollower fast_;
    PeakFollower slow_;
};

} // namespace Orvel
