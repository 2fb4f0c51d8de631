// What the analysis leaves for the pictures: plain values that live as long as the plug-in.
#pragma once

#include "analysis/GoniometerStream.h"
#include "analysis/SpectrumHandover.h"
#include "core/RealTime.h"
#include "core/Relaxed.h"
#include "frame/AnalysisSnapshot.h"

#include <array>

namespace Orvel {

class LevelMetering;

/// The largest value since the last picture, so that no peak between two pictures is lost.
class PictureMaximum {
  public:
    /// Analysing thread.
    void push(float value) noexcept ORVEL_NONBLOCKING {
        if (value > value_ || taken_) {
            value_ = value;
            taken_ = false;
        }
    }
    /// GUI thread, once per picture.
    float take() noexcept {
        const float value = value_;
        taken_ = true;
        return value;
    }

  private:
    Core::Relaxed<float> value_{0.0F};
    Core::Relaxed<bool> taken_{true}; // a hint: a picture late is fine
};

/// One channel of a level meter. Linear amplitude, except where the name says Db.
struct MeterDisplay {
    PictureMaximum bar;
    PictureMaximum hold;
    PictureMaximum rms;
    Core::Relaxed<float> dynamicRangeDb{-96.0F};
    Core::Relaxed<int> overs{0};
};

/// Bins up to +12 dB; what is above is not shown.
inline constexpr int kNumShownBins = Vardo::kNumHistogramBins - 1;

struct HistogramDisplay {
    std::array<Core::Relaxed<int>, kNumShownBins> counts;
    Core::Relaxed<int> highestCount{1}; ///< at least 1
};

/// Written by the analysing thread after each slice, read by views in their idle step. Closing a
/// window therefore never pulls memory from under the analysis.
class DisplayRecord {
  public:
    /// The editor says so when its window opens and closes; nothing is written in between.
    void setWatched(bool watched) noexcept { watched_ = watched; }
    bool isWatched() const noexcept { return watched_; }

    /// After a slice. Mid and Side are left alone unless asked for.
    void pushLevels(const LevelMetering& metering, bool withMidAndSide) noexcept ORVEL_NONBLOCKING;

    std::array<MeterDisplay, 4> meters; ///< Left, Right, Mid, Side
    std::array<HistogramDisplay, 4> histograms;
    /// Of mid on the spectrum page, of mid and of side on the stereo-field page.
    enum SpectrumView : std::size_t { kSpectrumPage = 0, kStereoMid = 1, kStereoSide = 2 };
    std::array<SpectrumHandover, 3> spectra;
    GoniometerStream goniometer;
    Core::Relaxed<float> correlation{0.0F}; ///< -1 to 1
    /// Grows by one with every write: a view repaints when it moved.
    Core::Relaxed<unsigned> levelsGeneration{0};

  private:
    Core::Relaxed<bool> watched_{false};
};

} // namespace Orvel
