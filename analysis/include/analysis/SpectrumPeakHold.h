// How long peaks stand, and how fast they fall.
#pragma once

#include "analysis/SpectrumHandover.h"

#include <algorithm>

namespace Orvel {

/// Threads: its owner's.
class SpectrumPeakHold {
  public:
    /// dB per second, 0..48. 0 keeps peaks until they are cleared. Up to 24 they stand for 2 s
    /// before they fall, then shorter, down to half a second at 48.
    void setReset(float dbPerSecond) noexcept;

    bool falls() const noexcept { return falls_; }
    float holdMs() const noexcept { return holdMs_; }
    float decayDbPerMs() const noexcept { return decay_; }

    /// One step of `ms` of a peak and its remaining hold: up at once, down after the hold.
    /// Without branches: over thousands of bins it is run several at a time.
    void step(float level, float ms, float& peakDb, float& remainingMs) const noexcept {
        const bool rises = level >= peakDb;
        const bool waits = remainingMs > 0;
        const float passed = falls_ ? ms : 0.0F;
        const float fallen = std::max(kLowestShownDb, peakDb - decay_ * passed);
        const float resting = waits ? peakDb : fallen;
        const float left = remainingMs - (waits ? passed : 0.0F);
        peakDb = rises ? level : resting;
        remainingMs = rises ? holdMs_ : left;
    }

  private:
    bool falls_ = true;
    float holdMs_ = 3000;
    float decay_ = 1;
};

} // namespace Orvel
