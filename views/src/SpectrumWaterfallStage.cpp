#include "views/SpectrumWaterfallStage.h"

#include "views/DisplayControl.h"

#include <cmath>

namespace Sorel {

namespace {

constexpr int kLevelsDb[] = {0, -12, -24, -36, -48, -60};
constexpr double kCrowdedRotate = 0.8;
constexpr double kTickLength = 4.0;
constexpr double kNumberHeight = 10.0;
constexpr double kNumberWidth = 18.0;

/// From +9 dB (0) to -72 dB (1).
double downTo(int db) { return (9.0 - db) / 81.0; }

} // namespace

void SpectrumWaterfallStage::place(const WaterfallProjection& projection,
                                   double rotate,
                                   double scaleWidth) {
    projection_ = projection;
    scaleWidth_ = scaleWidth;
    levelStep_ = rotate > kCrowdedRotate ? 2 : 1;
    const double spacing = projection.levelHeight() * (downTo(-12) - downTo(0));
    const int last = static_cast<int>(std::size(kLevelsDb));
    while (spacing * levelStep_ < kNumberHeight && levelStep_ < last)
        ++levelStep_;
}

void SpectrumWaterfallStage::line(CDrawContext& context, CPoint a, CPoint b) {
    context.drawLine(a.x, a.y, b.x, b.y);
}

void SpectrumWaterfallStage::fillFace(
    CDrawContext& context, CPoint a, CPoint b, CPoint c, CPoint d, CColor color) {
    face_.clear();
    face_.moveTo(a.x, a.y);
    for (const CPoint p : {b, c, d})
        face_.lineTo(p.x, p.y);
    face_.close();
    context.setFillColor(color);
    context.drawPath(face_, kFilled);
}

void SpectrumWaterfallStage::drawBehind(CDrawContext& context,
                                        std::span<const FrequencyLine> frequencies) {
    const DisplayColors& colors = displayColors();
    const auto at = [this](double along, double depth, double down) {
        return projection_.at(along, depth, down);
    };
    const double wallTop = downTo(0);
    fillFace(context, at(0, 0, 1), at(0, 1, 1), at(1, 1, 1), at(1, 0, 1), {0, 0, 0, 50});
    fillFace(context, at(0, 1, wallTop), at(1, 1, wallTop), at(1, 1, 1), at(0, 1, 1),
             colors.line1.withAlpha(10));
    fillFace(context, at(0, 0, wallTop), at(0, 1, wallTop), at(0, 1, 1), at(0, 0, 1),
             colors.line1.withAlpha(16));

    const auto walls = [&](double down) {
        line(context, at(0, 1, down), at(1, 1, down));
        line(context, at(0, 0, down), at(0, 1, down));
    };
    context.setFrameColor(colors.gridDim);
    context.setLineWidth(0.5);
    for (std::size_t i = 0; i < std::size(kLevelsDb); i += static_cast<std::size_t>(levelStep_))
        walls(downTo(kLevelsDb[i]));
    for (const FrequencyLine& frequency : frequencies) {
        const double along = frequency.x / scaleWidth_;
        line(context, at(along, 1, wallTop), at(along, 1, 1));
        line(context, at(along, 0, 1), at(along, 1, 1));
    }
    context.setFrameColor(colors.grid);
    context.setLineWidth(1.0);
    walls(1.0);
}

void SpectrumWaterfallStage::drawInFront(CDrawContext& context,
                                         std::span<const FrequencyLine> frequencies) {
    const DisplayColors& colors = displayColors();
    context.setFrameColor(colors.grid);
    context.setLineWidth(1.0);
    line(context, projection_.at(0, 0, 1), projection_.at(1, 0, 1));
    context.setFrameColor(colors.gridDim);
    context.setLineWidth(0.5);
    line(context, projection_.at(1, 0, 1), projection_.at(1, 1, 1));

    context.setFont(kDefaultFont, 8.0, kRegularFont);
    for (std::size_t i = 0; i < std::size(kLevelsDb); i += static_cast<std::size_t>(levelStep_)) {
        const int db = kLevelsDb[i];
        const CPoint newest = projection_.at(0, 0, downTo(db));
        const CPoint oldest = projection_.at(1, 1, downTo(db));
        drawLevelNumber(context, newest, std::floor(newest.x) + 2.0, db);
        drawLevelNumber(context, oldest, std::floor(oldest.x) - kNumberWidth, db);
    }
    drawFrequencies(context, frequencies);
}

void SpectrumWaterfallStage::drawLevelNumber(CDrawContext& context,
                                             CPoint corner,
                                             double left,
                                             int db) const {
    const DisplayColors& colors = displayColors();
    const double top = std::floor(corner.y + 0.5) - kNumberHeight * 0.5;
    const CRect box = CRect::ofSize(left, top, kNumberWidth, kNumberHeight);
    context.setFillColor(colors.shade);
    context.drawRoundRect(box, 2.0F, kFilled);
    context.setFontColor(colors.text2);
    context.drawStringAt(numberText(db, 0), {box.centre().x, box.top + 8.0},
                         HorizontalAlign::kCentre);
}

void SpectrumWaterfallStage::drawFrequencies(CDrawContext& context,
                                             std::span<const FrequencyLine> frequencies) const {
    const DisplayColors& colors = displayColors();
    context.setFont(kDefaultFont, 9.0, kBoldFont);
    context.setFontColor(colors.number);
    context.setFrameColor(colors.grid);
    context.setLineWidth(1.0);
    double taken = projection_.room().left;
    for (const FrequencyLine& frequency : frequencies) {
        const CPoint edge = projection_.at(frequency.x / scaleWidth_, 0, 1);
        const double x = std::floor(edge.x) + 0.5;
        context.drawLine(x, edge.y, x, edge.y + kTickLength);
        const CPoint baseline{x - 2.0, std::floor(edge.y + 0.5) + 11.0};
        const double left = baseline.x - gridTextWidth(frequency);
        if (left < taken || baseline.y >= projection_.room().bottom) continue;
        context.drawStringAt(frequency.text, baseline, HorizontalAlign::kRight);
        taken = baseline.x + 3.0;
    }
}

} // namespace Sorel
