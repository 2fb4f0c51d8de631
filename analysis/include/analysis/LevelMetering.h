// Everything about levels: peak, overs, RMS, histogram and meter ballistics of the five channels.
#pragma once

#include "analysis/FloatingHistogram.h"
#include "analysis/FloatingRMS.h"
#include "analysis/LevelMeterModel.h"
#include "analysis/Slice.h"
#include "core/RealTime.h"
#include "core/Relaxed.h"
#include "frame/AnalysisSnapshot.h"

#include <array>

namespace Orvel {

enum class MeteringMode : int { peak = 0, histogram = 1, k12 = 2, k14 = 3, k20 = 4 };

/// Measures each slice. Left and Right are always fed; Mid and Side get RMS and ballistics only
/// when asked for; Max gets neither. Unit: linear amplitude, 1.0 is full scale. Threads: `measure`
/// on the analysing thread; the set-up and read-out under the analysis lock; the requests anywhere.
class LevelMetering {
  public:
    static constexpr float kMaximumRmsMs = 1000.0F;
    static constexpr float kHistogramMs = 1000.0F;

    LevelMetering();

    // Each restarts the RMS and histogram windows; overs and ballistics go on.
    void setSampleRate(float sampleRate);
    void setRmsLength(float milliseconds);
    /// Clears every measure but the over counters.
    void reset();

    /// Carried out with the next slice, or by `carryOutRequests`.
    void requestOversReset() noexcept { oversResetWanted_ = true; }
    void carryOutRequests() noexcept ORVEL_NONBLOCKING;

    void
    measure(const Slice& slice, MeteringMode mode, bool withMidAndSide) noexcept ORVEL_NONBLOCKING;

    void read(Vardo::AnalysisSnapshot& snapshot) const;

    bool isHistogramOn() const { return mode_ == MeteringMode::histogram; }
    const CFloatingHistogram& histogram(int channel) const {
        return channels_[index(channel)].histogram;
    }
    const LevelMeterModel& meter(int channel) const { return channels_[index(channel)].meter; }
    float overs(int channel) const { return channels_[index(channel)].overs; }

  private:
    struct Channel {
        float peak = 0;    // of the last slice
        float peakMax = 0; // since the last reset
        float overs = 0;   // slices with a sample beyond full scale
        CFloatingRMS rms;
        bool rmsFed = false; // in the last slice
        CFloatingHistogram histogram;
        LevelMeterModel meter;
    };
    static std::size_t index(int channel) { return static_cast<std::size_t>(channel); }
    void setMode(MeteringMode mode) noexcept;

    std::array<Channel, Vardo::kNumAnalysisChannels> channels_;
    MeteringMode mode_ = MeteringMode::peak;
    Core::Relaxed<bool> oversResetWanted_{false};
};

} // namespace Orvel
