#include "views/SpectrumBars.h"

#include "views/DisplayColors.h"
#include "views/SpectrumColors.h"

#include <algorithm>
#include <cmath>

namespace Sorel {

namespace {
constexpr double kGap = 1.0;
constexpr double kPeakHeight = 2.0;
constexpr double kFootFactor = 1.15;
constexpr CColor kLitRow{255, 255, 255, 46};
} // namespace

bool SpectrumBars::update(const Orvel::SpectrumModel& model,
                          const CRect& room,
                          ChangedRows& changes) {
    const auto x = [&](float hz) {
        return room.left + std::ceil(model.scale().positionOf(double{hz}));
    };
    const auto y = [&](float db) {
        const auto height = static_cast<float>(room.height());
        return room.top + std::floor(double{Orvel::levelPosition(db, 0.0F, height)});
    };
    next_.clear();
    float value = Orvel::kLowestShownDb;
    float peak = Orvel::kLowestShownDb;
    double left = room.left;
    for (const Orvel::SpectrumBand& band : model.bands().shown()) {
        value = std::max(value, band.value);
        peak = std::max(peak, band.peak);
        const double right = std::min(x(band.highHz), room.right);
        if (right - left <= kGap) continue; // shares its pixels with the next band
        next_.push_back({left + kGap, right, y(value), y(peak), value, peak});
        value = peak = Orvel::kLowestShownDb;
        left = right;
    }
    bars_.swap(next_);
    changes.begin(static_cast<int>(room.width()));
    if (!std::equal(bars_.begin(), bars_.end(), next_.begin(), next_.end(),
                    [](const Bar& a, const Bar& b) { return a.standsAs(b); }))
        return true;
    for (std::size_t i = 0; i < bars_.size(); ++i) {
        const Bar& now = bars_[i];
        const Bar& before = next_[i];
        const auto enter = [&](double from, double to, double height) {
            if (from == to) return;
            changes.add(static_cast<int>(now.left - room.left),
                        static_cast<int>(now.right - room.left),
                        static_cast<float>(std::min(from, to) - room.top),
                        static_cast<float>(std::max(from, to) - room.top + height));
        };
        enter(before.top, now.top, 1.0);
        enter(before.peak, now.peak, kPeakHeight);
    }
    return false;
}

const SpectrumBars::Bar& SpectrumBars::barAt(double x) const {
    static constexpr Bar kNone;
    const auto bar =
        std::find_if(bars_.begin(), bars_.end(), [x](const Bar& b) { return x < b.right; });
    return bar != bars_.end() ? *bar : kNone;
}

void SpectrumBars::drawBars(CDrawContext& context, const SpectrumAxes& axes) {
    const CRect& room = axes.room();
    const CLinearGradient fill = spectrumFill(room.top, room.bottom, kFootFactor);
    const double radius = std::max(0.0, axes.cornerRadius() - kGap);
    context.setFillColor(kLitRow);
    for (const Bar& bar : bars_) {
        const CRect box{bar.left, bar.top, bar.right, room.bottom};
        if (box.isEmpty()) continue;
        const bool atCorner = &bar == &bars_.front() || &bar == &bars_.back();
        if (radius > 0.0 && atCorner) {
            corner_.clear();
            addFootedBox(corner_, box, &bar == &bars_.front() ? radius : 0.0,
                         &bar == &bars_.back() ? axes.cornerRadius() : 0.0);
            context.fillPath(corner_, fill);
        } else {
            context.fillRect(box, fill);
        }
        context.drawRect({bar.left, bar.top, bar.right, bar.top + 1.0}, kFilled);
    }
}

void SpectrumBars::drawPeaks(CDrawContext& context, const CRect& room) const {
    context.setFillColor(displayColors().main);
    for (const Bar& bar : bars_)
        if (bar.peak < room.bottom)
            context.drawRect({bar.left, bar.peak, bar.right, bar.peak + kPeakHeight}, kFilled);
}

} // namespace Sorel
