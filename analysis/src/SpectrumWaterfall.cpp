#include "analysis/SpectrumWaterfall.h"

#include <algorithm>

namespace Orvel {

namespace {
constexpr float kRise = 0.85F; // part of the way to a higher level, per step
constexpr float kFall = 0.35F;
} // namespace

SpectrumWaterfall::SpectrumWaterfall() { clear(); }

void SpectrumWaterfall::setHeights(float top, float bottom) noexcept {
    if (top == top_ && bottom == bottom_) return;
    top_ = top;
    bottom_ = bottom;
    clear();
}

void SpectrumWaterfall::clear() noexcept {
    for (Row& row : rows_)
        row.fill(bottom_);
    history_.fill(kLowestShownDb);
    nextRow_ = 0;
}

const SpectrumWaterfall::Row& SpectrumWaterfall::row(int age) const noexcept {
    const int back = 1 + std::clamp(age, 0, kNumRows - 1);
    return rows_[static_cast<std::size_t>((nextRow_ + kNumRows - back) % kNumRows)];
}

void SpectrumWaterfall::step(SpectrumLevels levels,
                             AnalyzeMode mode,
                             const FrequencyScale& scale) noexcept {
    const auto frequency = [&](int column) {
        return scale.frequencyAt(column * scale.width() / kNumColumns);
    };
    const auto bin = [&](double hz) { return static_cast<int>(hz / levels.binHz); };

    if (levels.db.empty() || !(levels.binHz > 0)) return;
    int lastColumn = 0;
    double lastHz = frequency(0);
    float lastLevel = analyzeRange(mode, lastHz, lastHz, levels);
    for (int column = 1; column < kNumColumns; ++column) {
        const double hz = frequency(column);
        const bool last = column == kNumColumns - 1;
        if (bin(hz) == bin(lastHz) && !last) continue;
        const float level = analyzeRange(mode, lastHz, hz, levels);
        const int span = column - lastColumn;
        for (int k = 0; k < span; ++k) {
            const float part = raisedCosine(static_cast<float>(k) / static_cast<float>(span));
            moveColumn(lastColumn + k, part * (level - lastLevel) + lastLevel);
        }
        if (last) moveColumn(column, level);
        lastColumn = column;
        lastHz = hz;
        lastLevel = level;
    }
    nextRow_ = (nextRow_ + 1) % kNumRows;
}

void SpectrumWaterfall::moveColumn(int column, float target) noexcept {
    float& level = history_[static_cast<std::size_t>(column)];
    level += (target - level) * (target < level ? kFall : kRise);
    rows_[static_cast<std::size_t>(nextRow_)][static_cast<std::size_t>(column)] =
        levelPosition(level, top_, bottom_);
}

} // namespace Orvel
