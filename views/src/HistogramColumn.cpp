#include "views/HistogramColumn.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace Sorel {

namespace {
constexpr float kFirstBinMiddleDb = -95.5F;
constexpr float kLastBin = Orvel::kNumShownBins - 1;
} // namespace

void HistogramColumn::setScale(const MeterScale& scale) {
    for (int i = 0; i < kNumRows; ++i) {
        const float height = 1.0F - (static_cast<float>(i) + 0.5F) / kNumRows;
        const float position =
            std::clamp(scale.levelAt(height) - kFirstBinMiddleDb, 0.0F, kLastBin);
        const float below = std::min(std::floor(position), kLastBin - 1);
        rows_[static_cast<std::size_t>(i)] = {
            static_cast<int>(below),
            0.5F - 0.5F * std::cos(std::numbers::pi_v<float> * (position - below))};
    }
}

HistogramColumn::Shades HistogramColumn::shades(const Counts& counts, int highest) const {
    std::array<float, Orvel::kNumShownBins> strength;
    const float one = 1.0F / static_cast<float>(std::max(highest, 1));
    std::transform(counts.begin(), counts.end(), strength.begin(), [one](int count) {
        return std::clamp(static_cast<float>(count) * one, 0.0F, 1.0F);
    });
    Shades result;
    std::transform(rows_.begin(), rows_.end(), result.begin(), [&](const Row& row) {
        const float low = strength[static_cast<std::size_t>(row.bin)];
        const float high = strength[static_cast<std::size_t>(row.bin) + 1];
        return static_cast<std::uint8_t>(255.0F * (low + row.above * (high - low)));
    });
    return result;
}

void HistogramColumn::draw(CDrawContext& context,
                           const CRect& area,
                           const Shades& shades,
                           CColor color) {
    for (int first = 0; first < kNumRows;) {
        const std::uint8_t alpha = shades[static_cast<std::size_t>(first)];
        int end = first + 1;
        while (end < kNumRows && shades[static_cast<std::size_t>(end)] == alpha)
            ++end;
        if (alpha > 0) {
            context.setFillColor(color.withAlpha(alpha));
            context.drawRect({area.left, area.top + first, area.right, area.top + end}, kFilled);
        }
        first = end;
    }
}

} // namespace Sorel
