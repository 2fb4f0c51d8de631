// The ballistics of one level meter, and its dynamic range.
#pragma once

#include "analysis/PeakFollower.h"
#include "core/RealTime.h"

namespace Orvel {

/// What a meter shows of one channel, fed once per slice so that its motion follows the sample
/// clock and not the paint rate. Unit: linear amplitude unless a name says Db. Threads: `update` on
/// the analysing thread; the rest under the analysis lock.
class LevelMeterModel {
  public:
    static constexpr float kNoDynamicRangeDb = -96.0F; ///< shown while peak or RMS is 0
    static constexpr float kLowestDb = -96.0F;

    LevelMeterModel();

    /// Hz. Keeps the values.
    void setSampleRate(float sampleRate);
    void reset();

    /// One slice of `samples` samples with that peak and RMS.
    void update(float peak, float rms, int samples) noexcept ORVEL_NONBLOCKING;

    float bar() const noexcept { return static_cast<float>(bar_.value()); }
    float hold() const noexcept { return static_cast<float>(hold_.value()); }
    float rms() const noexcept { return static_cast<float>(rms_.value()); }
    /// Held peak over smoothed RMS, smoothed: the crest of the material in dB.
    float dynamicRangeDb() const noexcept { return dynamicRangeDb_; }

  private:
    PeakFollower bar_;
    PeakFollower hold_;
    PeakFollower rms_;
    PeakFollower dynamicRange_;
    float dynamicRangeDb_ = kNoDynamicRangeDb;
};

} // namespace Orvel
