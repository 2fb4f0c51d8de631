#include "views/Goniometer.h"

#include "analysis/OrvelScope.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>

namespace Sorel {

namespace {

constexpr double kInset = 15.0;
constexpr double kFullScale = 0.9; ///< of the reach: where the engine draws a full-scale signal
constexpr double kDiagonal = 50.0;
constexpr int kDiamondAlpha = 34;
constexpr double kDiamondWidth = 0.7;
constexpr double kAxisWidth = 0.5;
constexpr double kTextSize = 10.0;
constexpr double kNameRoom = 20.0; ///< no name is longer
constexpr CColor kTextColor{20, 200, 60, 255};

bool isSame(const SplineDots::Points& a, const SplineDots::Points& b) {
    // By bits: what is no number equals itself, too.
    return std::equal(a.begin(), a.end(), b.begin(), [](const auto& p, const auto& q) {
        return std::bit_cast<std::uint64_t>(p) == std::bit_cast<std::uint64_t>(q);
    });
}

} // namespace

int goniometerDotAlpha(float sampleRate) {
    const float strength = std::clamp((sampleRate - 44100.0F) / 147900.0F, 0.0F, 1.0F) * 30.0F;
    return static_cast<int>(80.0F - strength);
}

CGoniometer::CGoniometer(const CRect& size, Orvel::COrvelScope* analyser)
    : IDisplayControl(size, analyser) {
    if (analyser != nullptr) sampleRate_ = analyser->sampleRate();
}

CRect CGoniometer::plotRect() const { return getViewSize().inset(kInset, kInset); }

/// The middle of a pixel, so that the axes are sharp and mono falls exactly on its axis.
CPoint CGoniometer::centre() const {
    const CPoint middle = plotRect().centre();
    return {std::floor(middle.x) + 0.5, std::floor(middle.y) + 0.5};
}

bool CGoniometer::setPoints(const SplineDots::Points& points, float sampleRate) {
    if (isSame(points, points_) &&
        goniometerDotAlpha(sampleRate) == goniometerDotAlpha(sampleRate_))
        return false;
    points_ = points;
    sampleRate_ = sampleRate;
    const CRect before = dotsRect_;
    placeDots();
    const CRect& now = dotsRect_;
    invalidRect(CRect{std::min(before.left, now.left), std::min(before.top, now.top),
                      std::max(before.right, now.right), std::max(before.bottom, now.bottom)}
                    .intersected(getViewSize()));
    return true;
}

void CGoniometer::placeDots() {
    dots_.setPoints(points_, static_cast<float>(plotRect().width() * 0.5));
    const CRect bounds = dots_.bounds().moved(centre());
    dotsRect_ = {std::floor(bounds.left), std::floor(bounds.top), std::ceil(bounds.right),
                 std::ceil(bounds.bottom)};
}

void CGoniometer::setViewSize(const CRect& rect, bool invalidate) {
    IDisplayControl::setViewSize(rect, invalidate);
    placeDots();
}

void CGoniometer::onIdle() {
    if (analyser() == nullptr || !isVisible()) return;
    analyser()->display().goniometer.read(latest_);
    setPoints(latest_, analyser()->sampleRate());
}

void CGoniometer::drawGuides(CDrawContext& context) const {
    const CPoint c = centre();
    const double r = std::floor(plotRect().width() * 0.5) * kFullScale;
    context.setLineWidth(1.0);
    context.setFrameColor(colors().faint);
    context.drawEllipse({c.x - r, c.y - r, c.x + r, c.y + r}, kStroked);
    context.setLineWidth(kDiamondWidth);
    context.setFrameColor(colors().faint.withAlpha(kDiamondAlpha));
    const std::array<CPoint, 5> diamond{
        {{c.x, c.y - r}, {c.x + r, c.y}, {c.x, c.y + r}, {c.x - r, c.y}, {c.x, c.y - r}}};
    context.drawPolyline(diamond);
}

void CGoniometer::drawDiagonals(CDrawContext& context) const {
    const CPoint c = centre();
    context.setLineWidth(kAxisWidth);
    context.setFrameColor(colors().dim);
    const std::array<CPoint, 3> diagonals{
        {{c.x - kDiagonal, c.y - kDiagonal}, {c.x, c.y}, {c.x + kDiagonal, c.y - kDiagonal}}};
    context.drawPolyline(diagonals);
}

/// Above the dots. Most of it is outside of what is painted again.
void CGoniometer::drawOverlay(CDrawContext& context) {
    const CRect plot = plotRect();
    const double x = std::floor(centre().x);
    const double y = std::floor(centre().y);
    const CRect upper{x - kDiagonal - 1.0, y - kDiagonal - 1.0, x + kDiagonal + 2.0, y + 2.0};
    diagonals_.draw(context, upper, [this](CDrawContext& still) { drawDiagonals(still); });
    context.setFillColor(colors().dim.faded(kAxisWidth));
    context.drawRect({plot.left, y, plot.right, y + 1.0}, kFilled);
    context.drawRect({x, plot.top, x + 1.0, plot.bottom}, kFilled);

    context.setFont(kDefaultFont, kTextSize, kRegularFont);
    context.setFontColor(kTextColor);
    const CPoint middle = plot.centre();
    const CRect clip = context.getClipRect();
    const auto name = [&](const char* text, CPoint place, HorizontalAlign align) {
        const CRect around{place.x - kNameRoom, place.y - kNameRoom, place.x + kNameRoom,
                           place.y + kNameRoom};
        if (around.touches(clip)) context.drawStringAt(text, place, align);
    };
    name("S+", {plot.left + 2.0, middle.y - 3.0}, HorizontalAlign::kLeft);
    name("S-", {plot.right - 2.0, middle.y - 3.0}, HorizontalAlign::kRight);
    name("M+", {middle.x + 4.0, plot.top + 9.0}, HorizontalAlign::kLeft);
    name("M-", {middle.x + 4.0, plot.bottom - 2.0}, HorizontalAlign::kLeft);
    const double high = middle.y - kDiagonal - 1.0;
    name("R", {middle.x + kDiagonal + 3.0, high}, HorizontalAlign::kLeft);
    name("L", {middle.x - kDiagonal - 3.0, high}, HorizontalAlign::kRight);
}

void CGoniometer::draw(CDrawContext& context) {
    guides_.drawWithGround(context, *this, getViewSize(),
                           [this](CDrawContext& still) { drawGuides(still); });
    // The cubic swings beyond the points; the picture ends where full scale does.
    const CRect oldClip = context.getClipRect();
    CRect picture = plotRect();
    picture.right += 1.0;
    picture.bottom += 1.0;
    context.setClipRect(oldClip.intersected(picture));
    dots_.draw(context, centre(), colors().warn2.withAlpha(goniometerDotAlpha(sampleRate_)));
    context.setClipRect(oldClip);
    drawOverlay(context);
    IDisplayControl::draw(context);
}

} // namespace Sorel
