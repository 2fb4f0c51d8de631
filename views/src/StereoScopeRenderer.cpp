// The scope's lanes and what is marked in them.
#include "views/ScopeRenderer.h"

#include <algorithm>
#include <cmath>

namespace Sorel {

namespace {

constexpr int kCentreLineAlpha = 0x41;
constexpr CColor kLaneSeparator{12, 13, 22, 140};
constexpr int kMarkAlpha = 0x73;
constexpr double kSibilanceStrength = 0.4; // the wave stays readable through the shade
constexpr int kShadeRows = 16;
constexpr double kOverLength = 5.0;
constexpr int kLanes[] = {CStereoScopeRenderer::kBoth, CStereoScopeRenderer::kUpperLane,
                          CStereoScopeRenderer::kLowerLane};

int envelopeStep(ScopeColumn column) {
    return static_cast<int>(std::clamp(column.max * 255.0F, 0.0F, 255.0F));
}

void fill(CDrawContext& context, const CRect& rect, CColor color) {
    context.setFillColor(color);
    context.drawRect(rect, kFilled);
}

/// The row of pixels in which `y` lies.
void hairline(CDrawContext& context, const CRect& rect, double y, CColor color) {
    fill(context, {rect.left, std::floor(y), rect.right, std::floor(y) + 1.0}, color);
}

} // namespace

CRect CStereoScopeRenderer::upperLane(const CRect& rect) {
    return {rect.left, rect.top, rect.right, rect.centre().y};
}

CRect CStereoScopeRenderer::lowerLane(const CRect& rect) {
    return {rect.left, rect.centre().y, rect.right, rect.bottom};
}

CNewScopeRenderer::ColumnMark
CStereoScopeRenderer::markOf(ScopeColumn column, int layer, double height) const {
    switch (layer) {
    case kUpperLane:
    case kLowerLane:
        return CNewScopeRenderer::markOf(column, layer, height * 0.5);
    case kTransients:
    case kOvers:
        return {0, column.max > 0.0F};
    case kSibilance:
        return {0, envelopeStep(column)};
    default:
        return CNewScopeRenderer::markOf(column, layer, height);
    }
}

void CStereoScopeRenderer::Draw(CDrawContext& context, const CRect& rect) {
    if (numLayers() <= kOvers) return;
    drawLanes(context, rect);
    if (hasTwoLanes()) hairline(context, rect, rect.centre().y, kLaneSeparator);
    if (layer(kTransients).visible) DrawTransientMarks(context, rect, kTransients);
    if (layer(kSibilance).visible) DrawSibilance(context, rect, kSibilance);
    if (layer(kOvers).visible) DrawOvers(context, rect, kOvers);
}

CRect CStereoScopeRenderer::laneRect(const CRect& rect, int lane) const {
    return lane == kUpperLane ? upperLane(rect) : lane == kLowerLane ? lowerLane(rect) : rect;
}

void CStereoScopeRenderer::drawLanes(CDrawContext& context, const CRect& rect) {
    const auto drawCurves = [this](CDrawContext& target, const CRect& where) {
        for (const int lane : kLanes)
            if (layer(lane).visible) DrawLayerCurve(target, laneRect(where, lane), lane);
    };
    followLook();
    if (drawsTrace()) { // runs from sample to sample, over columns that did not change
        strip_.invalidate();
        drawCurves(context, rect);
    } else {
        strip_.setFirst(firstPlace());
        strip_.draw(context, rect, [&](CDrawContext& target, double left) {
            drawCurves(target, {left, 0.0, left + rect.width(), rect.height()});
        });
    }
    for (const int lane : kLanes)
        if (layer(lane).visible)
            hairline(context, rect, laneRect(rect, lane).centre().y,
                     layer(lane).lineColour.withAlpha(kCentreLineAlpha));
}

void CStereoScopeRenderer::placeChanged(int layer, int place) {
    if (layer <= kLowerLane) strip_.invalidate(place);
}

void CStereoScopeRenderer::followLook() {
    if (stripWidth_ != numColumns()) {
        stripWidth_ = numColumns();
        strip_.setWidth(stripWidth_);
    }
    Look look;
    for (const int lane : kLanes)
        look.visible[lane] = layer(lane).visible;
    // The lanes are of one kind.
    const ScopeRenderLayer& any = layer(kBoth);
    look.colours[0] = any.lineColour;
    look.colours[1] = any.topFade;
    look.colours[2] = any.midFade;
    look.colours[3] = any.bottomFade;
    look.lineWidth = any.lineWidth;
    if (look == look_) return;
    look_ = look;
    strip_.invalidate();
}

void CStereoScopeRenderer::DrawTransientMarks(CDrawContext& context, const CRect& rect, int index) {
    const ScopeRenderLayer& marks = layer(index);
    const ColumnRange range = clipped(context, rect, kMarkReach, 0);
    const double upperEnd = std::ceil(hasTwoLanes() ? upperLane(rect).centre().y : rect.centre().y);
    const double lowerTop = std::floor(lowerLane(rect).centre().y);
    const auto isMarked = [&](int c) { return c >= 0 && columnOf(marks, c).max > 0.0F; };
    for (int c = range.first; c < range.end; ++c) {
        // A sample may be several columns wide; its mark begins with the first of them.
        if (!isMarked(c) || isMarked(c - 1)) continue;
        const double left = rect.left + c;
        const double right = std::min(left + kMarkReach, rect.right);
        const CLinearGradient fade = CLinearGradient::horizontal(left, left + kMarkReach)
                                         .stop(0.0, marks.fillColour.withAlpha(kMarkAlpha))
                                         .stop(1.0, marks.fillColour.withAlpha(0));
        context.fillRect({left, rect.top, right, upperEnd}, fade);
        if (hasTwoLanes()) context.fillRect({left, lowerTop, right, rect.bottom}, fade);
    }
}

/// One-pixel columns are the slowest shape there is: the shades are laid side by side in a picture
/// of a few rows, which is then drawn row by row, as often as it takes.
void CStereoScopeRenderer::DrawSibilance(CDrawContext& context, const CRect& rect, int index) {
    const ScopeRenderLayer& envelope = layer(index);
    const ColumnRange range = clipped(context, rect, 0, 0);
    const double top = std::ceil(hasTwoLanes() ? upperLane(rect).centre().y : rect.centre().y);
    const double bottom = hasTwoLanes() ? std::floor(lowerLane(rect).centre().y) : rect.bottom;
    const auto alphaOf = [&](int c) {
        const int step = envelopeStep(columnOf(envelope, c));
        return static_cast<int>(std::lround(kSibilanceStrength * step));
    };
    for (int c = range.first; c < range.end; ++c) {
        const int first = c;
        for (int alpha = 0; c < range.end && (alpha = alphaOf(c)) > 0; ++c)
            shadeColumn(c, envelope.fillColour.withAlpha(alpha));
        if (c == first) continue;
        for (double y = top; y < bottom; y += kShadeRows)
            shades_->draw(context,
                          {rect.left + first, y, rect.left + c, std::min(y + kShadeRows, bottom)},
                          {double(first), 0.0});
    }
}

void CStereoScopeRenderer::shadeColumn(int column, CColor colour) {
    if (!shades_ || shades_->getWidth() < numColumns())
        shades_ = Counted<CBitmap>::make(numColumns(), kShadeRows);
    const auto premultiplied = [&](int value) {
        return static_cast<std::uint8_t>((value * colour.alpha + 127) / 255);
    };
    const std::uint8_t pixel[4] = {premultiplied(colour.blue), premultiplied(colour.green),
                                   premultiplied(colour.red), colour.alpha};
    IOSBitmap& picture = shades_->surface();
    for (int row = 0; row < kShadeRows; ++row)
        std::copy_n(pixel, 4, picture.getPixels() + row * picture.stride + 4 * column);
}

void CStereoScopeRenderer::DrawOvers(CDrawContext& context, const CRect& rect, int index) {
    const ScopeRenderLayer& overs = layer(index);
    const ColumnRange range = clipped(context, rect, 0, 0);
    const auto isOver = [&](int c) { return columnOf(overs, c).max > 0.0F; };
    for (int c = range.first; c < range.end; ++c) {
        if (!isOver(c)) continue;
        const int first = c;
        while (c + 1 < range.end && isOver(c + 1))
            ++c;
        const double left = rect.left + first;
        const double right = rect.left + c + 1;
        const CColor colour = overs.fillColour.withAlpha(255);
        fill(context, {left, rect.top, right, rect.top + kOverLength}, colour);
        if (hasTwoLanes())
            fill(context, {left, rect.bottom - kOverLength, right, rect.bottom}, colour);
    }
}

} // namespace Sorel
