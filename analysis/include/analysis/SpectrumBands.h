// A spectrum in bands of equal musical width, with peaks.
#pragma once

#include "analysis/SpectrumHandover.h"
#include "analysis/SpectrumPeakHold.h"
#include "analysis/SpectrumRange.h"

#include <array>
#include <span>

namespace Orvel {

struct SpectrumBand {
    float lowHz = 0;
    float highHz = 0;
    float value = kLowestShownDb; ///< smoothed, dB
    float peak = kLowestShownDb;  ///< dB
    float holdMs = 0;             ///< until the peak falls
};

/// 128 narrow bands are measured; what is shown are 8, 16, 32, 64 or all 128, each of them a group
/// of narrow ones. A group shows its highest value and its highest peak. Threads: its owner's.
class SpectrumBands {
  public:
    static constexpr int kNumBands = 128;

    SpectrumBands();

    /// Hz. Clears.
    void setSampleRate(double sampleRate) noexcept;
    /// 8, 16, 32, 64 or 128; any other number counts as the next lower of these, or 8. The levels
    /// stay.
    void setShownCount(int count) noexcept;
    int shownCount() const noexcept { return shownCount_; }
    void clear() noexcept;

    /// One step of `ms`.
    void
    step(SpectrumLevels levels, AnalyzeMode mode, const SpectrumPeakHold& hold, float ms) noexcept;

    std::span<const SpectrumBand, kNumBands> bands() const noexcept { return bands_; }
    std::span<const SpectrumBand> shown() const noexcept {
        return {shown_.data(), static_cast<std::size_t>(shownCount_)};
    }

  private:
    void formShown() noexcept;

    std::array<SpectrumBand, kNumBands> bands_;
    std::array<SpectrumBand, kNumBands> shown_;
    int shownCount_ = 64;
};

} // namespace Orvel
