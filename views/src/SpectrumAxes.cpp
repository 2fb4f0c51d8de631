#include "views/SpectrumAxes.h"

#include "views/DisplayControl.h"
#include "views/SoftBed.h"
#include "views/SpectrumColors.h"

namespace Sorel {

namespace {
constexpr int kHighestTickDb = 6;
constexpr int kLowestTickDb = -72;
constexpr int kTickDb = 6;
constexpr double kLevelTextRight = 22.0; // numbers end here, from the left edge
constexpr double kShadeWidth = 40.0;
constexpr int kNumberBedAlpha = 200;
constexpr double kLineFoot = 12.0;  // frequency lines end above the bottom
constexpr double kTextGap = 4.0;    // between two frequencies
constexpr double kTextBottom = 3.0; // baseline of the frequencies, from the bottom
} // namespace

void addFootedBox(CPath& path, const CRect& box, double leftRadius, double rightRadius) {
    path.moveTo(box.left, box.top);
    path.lineTo(box.right, box.top);
    path.lineTo(box.right, box.bottom - rightRadius);
    path.quadTo({box.right, box.bottom}, {box.right - rightRadius, box.bottom});
    path.lineTo(box.left + leftRadius, box.bottom);
    path.quadTo({box.left, box.bottom}, {box.left, box.bottom - leftRadius});
    path.close();
}

void SpectrumAxes::setRoom(const CRect& room, double cornerRadius) {
    room_ = room;
    cornerRadius_ = cornerRadius;
    foot_.clear();
    addFootedBox(foot_, {room.left, room.bottom - kFootHeight, room.right, room.bottom},
                 cornerRadius, cornerRadius);
    for (StillPicture* still : {&lines_, &leftShade_, &frequencies_, &levels_})
        still->invalidate();
}

void SpectrumAxes::setScale(const Orvel::FrequencyScale& scale) {
    grid_.place(scale);
    lines_.invalidate();
    frequencies_.invalidate();
}

double SpectrumAxes::levelLine(float db) const {
    const float y = Orvel::levelPosition(db, 0.0F, static_cast<float>(room_.height()));
    return room_.top + std::floor(double{y}) + 0.5;
}

double SpectrumAxes::frequencyLine(double position) const {
    return room_.left + std::floor(position) + 0.5;
}

void SpectrumAxes::drawLines(CDrawContext& context, const CView& view) {
    lines_.drawWithGround(context, view, room_, [this](CDrawContext& still) { paintLines(still); });
}

/// Filled boxes of whole pixels look as lines of a broken width on + 0.5 do.
void SpectrumAxes::paintLines(CDrawContext& context) const {
    const DisplayColors& colors = displayColors();
    const auto row = [&](double y, CColor color) {
        context.setFillColor(color);
        context.drawRect({room_.left, y, room_.right, y + 1.0}, kFilled);
    };
    for (int db = kHighestTickDb; db > kLowestTickDb; db -= kTickDb) {
        const double y = std::floor(levelLine(static_cast<float>(db)));
        if (db != 0) {
            row(y, colors.gridDim.faded(0.5));
            continue;
        }
        row(y - 1.0, colors.gridDim.faded(0.25)); // 1.5 wide
        row(y, colors.gridDim);
        row(y + 1.0, colors.gridDim.faded(0.25));
    }
    context.setFillColor(colors.grid.faded(0.5));
    for (const FrequencyLine& line : grid_.lines()) {
        const double x = std::floor(frequencyLine(line.x));
        context.drawRect({x, room_.top, x + 1.0, room_.bottom - kLineFoot}, kFilled);
    }
}

void SpectrumAxes::drawLeftShade(CDrawContext& context) {
    const CRect place{room_.left, room_.top, room_.left + kShadeWidth, room_.bottom};
    leftShade_.draw(context, place, [&](CDrawContext& still) { paintLeftShade(still, place); });
}

void SpectrumAxes::paintLeftShade(CDrawContext& context, const CRect& shade) const {
    const CLinearGradient gradient = CLinearGradient::horizontal(shade.left, shade.right)
                                         .stop(0.0, kWellShade.withAlpha(215))
                                         .stop(0.6, kWellShade.withAlpha(130))
                                         .stop(1.0, kWellShade.withAlpha(0));
    if (cornerRadius_ > 0.0)
        context.fillRoundRect(shade, cornerRadius_, gradient);
    else
        context.fillRect(shade, gradient);
}

void SpectrumAxes::drawNumbers(CDrawContext& context) {
    const CRect foot{room_.left, room_.bottom - kFootHeight, room_.right, room_.bottom};
    frequencies_.draw(context, foot, [this](CDrawContext& still) {
        still.setFillColor(kWellShade.withAlpha(175));
        still.drawPath(foot_, kFilled);
        drawFrequencies(still);
    });
    const CRect left{room_.left, room_.top, room_.left + kShadeWidth, room_.bottom};
    levels_.draw(context, left, [this](CDrawContext& still) { drawLevels(still); });
}

void SpectrumAxes::drawLevels(CDrawContext& context) const {
    context.setFont(kDefaultFont, 8.0, kBoldFont);
    context.setFontColor(displayColors().number);
    for (int db = kHighestTickDb; db > kLowestTickDb; db -= kTickDb) {
        const double y = std::floor(levelLine(static_cast<float>(db)));
        const bool fits = y - 4.0 >= room_.top && y + 4.0 <= room_.bottom - kFootHeight;
        if (!fits) continue;
        const std::string text = numberText(db, 0, db > 0);
        const double right = room_.left + kLevelTextRight;
        // A bed, so that grid and curves do not strike the number through.
        const double left = std::floor(right - context.getStringWidth(text));
        drawSoftBed(context, {left, y - 3.0, right, y + 3.0},
                    kWellShade.withAlpha(kNumberBedAlpha));
        context.drawStringAt(text, {right, y + 3.0}, HorizontalAlign::kRight);
    }
}

void SpectrumAxes::drawFrequencies(CDrawContext& context) const {
    context.setFont(kDefaultFont, 9.0, kBoldFont);
    context.setFontColor(displayColors().number);
    double taken = room_.left;
    for (const FrequencyLine& line : grid_.lines()) {
        const double x = frequencyLine(line.x);
        const double half = gridTextWidth(line) * 0.5;
        if (x - half < taken || x + half > room_.right) continue;
        context.drawStringAt(line.text, {x, room_.bottom - kTextBottom}, HorizontalAlign::kCentre);
        taken = x + half + kTextGap;
    }
}

} // namespace Sorel
