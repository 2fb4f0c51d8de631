// How the scope paints its rulers, labels and cursor over the curves.
#include "analysis/ScopeTiming.h"
#include "views/Scope.h"
#include "views/SoftBed.h"

#include <string>
#include <string_view>

namespace Sorel {

namespace {

constexpr double kHeavyLine = 1.5;
constexpr double kFineLine = 0.5;
constexpr double kBelowRuler = 0.4; // so that the grid never outshines the wave
constexpr CColor kWholeBeatColour{210, 168, 52, 255};
constexpr int kSeparatorAlpha = 50;

constexpr double kLabelSize = 9.0;
constexpr double kTopBaseline = 9.0;
constexpr double kBottomBaseline = -3.0;
constexpr double kLabelGap = 3.0; // between two labels; below it the finer one gives way
constexpr double kLabelGivesWay = 6.0;
constexpr double kReadable = 0.25; // what is fainter reads as a smudge

constexpr double kBoxRadius = 2.0;
constexpr int kArmedFillAlpha = 50;
constexpr int kQuietAlpha = 150;
constexpr int kNameAlpha = 225;
constexpr int kNameBedAlpha = 205;
constexpr CRect kNameRoom{-44.0, 0.0, 0.0, 20.0}; // from the lane's top right
constexpr CPoint kNameEnd{-6.0, 12.0};

constexpr double kCursorBoxWidth = 60.0;
constexpr double kCursorBoxHeight = 16.0;
constexpr double kAbovePointer = 8.0;
constexpr double kBelowPointer = 20.0; // the height of an arrow
constexpr double kBesideCursor = 4.0;
constexpr double kCursorTextSize = 10.0;
constexpr double kCentreZone = 0.5; // pixels to either side that count as no level at all

void fill(CDrawContext& context, const CRect& rect, CColor colour) {
    context.setFillColor(colour);
    context.drawRect(rect, kFilled);
}

/// A line of `width` pixels in the middle of the pixel column at `left`: lines up to a pixel wide
/// cover that column in part, wider ones also their neighbours. As whole rectangles that costs a
/// fraction of an antialiased line, and looks the same.
void column(CDrawContext& context, double left, double top, double bottom, double width, CColor c) {
    fill(context, {left, top, left + 1.0, bottom}, c.faded(std::min(1.0, width)));
    const double beside = (width - 1.0) * 0.5;
    if (beside <= 0.0) return;
    fill(context, {left - 1.0, top, left, bottom}, c.faded(beside));
    fill(context, {left + 1.0, top, left + 2.0, bottom}, c.faded(beside));
}

void box(CDrawContext& context, const CRect& rect, CColor ground, CColor outline, double width) {
    context.setFillColor(ground);
    context.drawRoundRect(rect, static_cast<float>(kBoxRadius), kFilled);
    context.setFrameColor(outline);
    context.setLineWidth(width);
    context.drawRoundRect(rect.inset(0.5, 0.5), static_cast<float>(kBoxRadius), kStroked);
}

struct LaneNames {
    std::string_view first;
    std::string_view second;
};

LaneNames laneNames(int channelMode) {
    switch (static_cast<Orvel::ScopeChannelMode>(channelMode)) {
    case Orvel::ScopeChannelMode::leftAndRight:
        return {"L", "R"};
    case Orvel::ScopeChannelMode::leftOnly:
        return {"L", {}};
    case Orvel::ScopeChannelMode::rightOnly:
        return {"R", {}};
    case Orvel::ScopeChannelMode::monoMix:
        return {"Mono", {}};
    case Orvel::ScopeChannelMode::max:
        return {"Max", {}};
    }
    return {};
}

std::string levelText(double pixelsFromCentre, double half) {
    if (pixelsFromCentre < kCentreZone) return "-oo dB";
    const double decibels = 20.0 * std::log10(std::min(1.0, pixelsFromCentre / half));
    return numberText(decibels > -0.05 ? 0.0 : decibels, 1) + "dB";
}

} // namespace

void CScope::draw(CDrawContext& context) {
    layOutRulers();
    renderer_.Draw(context, dataRect_);
    drawRulers(context);
    drawLaneNames(context);
    drawSync(context);
    IDisplayControl::draw(context);
}

void CScope::drawRulers(CDrawContext& context) {
    const CColor grid = colors().grid;
    for (const RulerLine& line : beats_.lines) {
        const double left = std::floor(dataRect_.left + line.x);
        const double width = line.heavy ? kHeavyLine : kFineLine;
        column(context, left, beatRulerRect_.top, beatRulerRect_.bottom, width,
               grid.faded(line.fade));
        column(context, left, beatRulerRect_.bottom, dataRect_.bottom, width,
               grid.faded(line.fade * kBelowRuler));
    }
    for (const RulerLine& line : times_.lines)
        column(context, std::floor(dataRect_.left + line.x), timeRulerRect_.top,
               timeRulerRect_.bottom, kFineLine, grid.faded(line.fade));

    const CColor separator = grid.withAlpha(kSeparatorAlpha);
    fill(context, {dataRect_.left, dataRect_.top - 1.0, dataRect_.right, dataRect_.top}, separator);
    fill(context, {dataRect_.left, dataRect_.bottom, dataRect_.right, dataRect_.bottom + 1.0},
         separator);

    // What changes while music plays lies between the texts.
    const CRect clip = context.getClipRect();
    context.setFont(kDefaultFont, kLabelSize, kBoldFont);
    if (clip.top < dataRect_.top) drawLabels(context, beats_, getViewSize().top + kTopBaseline);
    if (clip.bottom > dataRect_.bottom)
        drawLabels(context, times_, getViewSize().bottom + kBottomBaseline);
}

void CScope::drawLabels(CDrawContext& context, const Ruler& ruler, double baseline) {
    for (const RulerLine& line : ruler.lines) {
        const std::string_view label = line.label.data();
        const double width = context.getStringWidth(label);
        const double x = std::floor(dataRect_.left + line.x) + 0.5;
        // A number that is cut reads as another one.
        if (x - width * 0.5 < getViewSize().left + kLabelGap ||
            x + width * 0.5 > getViewSize().right - kLabelGap)
            continue;
        double fade = line.fade;
        if (fade < 1.0)
            fade = std::clamp((ruler.spacing - width - kLabelGap) / kLabelGivesWay, 0.0, fade);
        if (fade < kReadable) continue;
        context.setFontColor((line.wholeBeat ? kWholeBeatColour : colors().number).faded(fade));
        context.drawStringAt(label, {x, baseline}, HorizontalAlign::kCentre);
    }
}

void CScope::drawLaneNames(CDrawContext& context) {
    const auto draw = [&](StillPicture& picture, std::string_view name, double top) {
        if (name.empty()) return;
        const CPoint corner{dataRect_.right, top};
        picture.draw(context, kNameRoom.moved(corner), [&](CDrawContext& still) {
            const CPoint end = corner + kNameEnd;
            still.setFont(kDefaultFont, kLabelSize, kBoldFont);
            const double left = std::floor(end.x - still.getStringWidth(name));
            drawSoftBed(still, {left, end.y - 7.0, end.x, end.y},
                        colors().ground.withAlpha(kNameBedAlpha));
            still.setFontColor(colors().text1.withAlpha(kNameAlpha));
            still.drawStringAt(name, end, HorizontalAlign::kRight);
        });
    };
    const LaneNames names = laneNames(channelMode_);
    draw(laneNames_[0], names.first, dataRect_.top);
    draw(laneNames_[1], names.second, std::round(dataRect_.centre().y));
}

void CScope::drawSync(CDrawContext& context) {
    if (!showSyncLabel_) return;
    const CColor gold = colors().main;
    if (syncMarkerActive_) {
        box(context, syncLabelRect_, colors().shade, gold, 1.0);
        context.setFillColor(gold.withAlpha(kArmedFillAlpha));
        context.drawRoundRect(syncLabelRect_, static_cast<float>(kBoxRadius), kFilled);
    } else {
        box(context, syncLabelRect_, colors().shade, colors().frame.withAlpha(kQuietAlpha), 1.0);
    }
    context.setFont(kDefaultFont, kLabelSize, kBoldFont);
    context.setFontColor(syncMarkerActive_ ? gold : colors().text1);
    context.drawString("Sync", syncLabelRect_);
    if (syncMarkerActive_) // the numbers above and below stay readable
        column(context, std::floor(syncMarkerX_), dataRect_.top, dataRect_.bottom, 1.0, gold);
}

void CScope::DrawCursor(CDrawContext& context, CPoint position) {
    if (!dataRect_.contains(position) || isOnSyncLabel(position)) return;
    const CColor gold = colors().main;
    const double x = std::min(std::floor(position.x), dataRect_.right - 1.0);
    const bool twoLanes = channelMode_ == static_cast<int>(Orvel::ScopeChannelMode::leftAndRight);
    CRect lane = dataRect_;
    if (twoLanes)
        lane = position.y < dataRect_.centre().y ? CStereoScopeRenderer::upperLane(dataRect_)
                                                 : CStereoScopeRenderer::lowerLane(dataRect_);
    const std::string level =
        levelText(std::abs(position.y - lane.centre().y), lane.height() * 0.5);

    double left = std::max(x - kCursorBoxWidth * 0.5, dataRect_.left);
    if (left + kCursorBoxWidth > dataRect_.right) left = x - kBesideCursor - kCursorBoxWidth;
    double top = std::floor(position.y) - kAbovePointer - kCursorBoxHeight;
    if (top < dataRect_.top) top = std::floor(position.y) + kBelowPointer;
    const CRect readOut = CRect::ofSize(left, top, kCursorBoxWidth, kCursorBoxHeight);
    const bool throughBox = x >= readOut.left && x < readOut.right;
    column(context, x, dataRect_.top, throughBox ? readOut.top : dataRect_.bottom, 1.0, gold);
    if (throughBox) column(context, x, readOut.bottom, dataRect_.bottom, 1.0, gold);
    box(context, readOut, colors().shade, gold, 0.5);
    context.setFont(kDefaultFont, kCursorTextSize, kBoldFont);
    context.setFontColor(gold);
    context.drawString(level, readOut);
}

} // namespace Sorel
