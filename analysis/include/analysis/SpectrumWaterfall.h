// The last spectra, one behind the other.
#pragma once

#include "analysis/SpectrumRange.h"
#include "analysis/SpectrumScale.h"

#include <array>
#include <span>

namespace Orvel {

/// Rows of 160 heights, made one per step, the last 80 kept. A row holds heights, not levels, so
/// that painting need not convert 12800 of them. Threads: its owner's.
class SpectrumWaterfall {
  public:
    static constexpr int kNumRows = 80;
    static constexpr int kNumColumns = 160;
    using Row = std::array<float, kNumColumns>;

    SpectrumWaterfall();

    /// Heights of +9 dB and of -72 dB. Clears when they change.
    void setHeights(float top, float bottom) noexcept;
    void clear() noexcept;

    /// Makes the next row. Where columns are narrower than bins, the way between two bins is a
    /// raised cosine.
    void step(SpectrumLevels levels, AnalyzeMode mode, const FrequencyScale& scale) noexcept;

    /// The row made `age` steps ago, 0..79: 0 is the newest.
    const Row& row(int age) const noexcept;
    /// The smoothed levels behind the newest row, dB.
    std::span<const float, kNumColumns> history() const noexcept { return history_; }

  private:
    void moveColumn(int column, float target) noexcept;

    std::array<Row, kNumRows> rows_;
    int nextRow_ = 0;
    std::array<float, kNumColumns> history_;
    float top_ = 0;
    float bottom_ = 1;
};

} // namespace Orvel
