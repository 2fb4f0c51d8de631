#include "views/CorrelationMeter.h"

#include "analysis/OrvelScope.h"

#include <algorithm>
#include <cmath>
#include <tuple>

namespace Sorel {

namespace {

constexpr float kNearZero = 0.15F;
constexpr double kMargin = 15.0;
constexpr double kTextBaseline = 16.0;
constexpr double kTextSize = 10.0;
constexpr double kNumberPlace = 0.72; ///< of the bar, between the names of 0 and +1
constexpr double kBarTop = 23.0;
constexpr double kBarHeight = 12.0;
constexpr double kFillInset = 2.0;
constexpr float kRadius = 2.0F;
constexpr CColor kBed{0, 0, 0, 90};
constexpr int kOutlineAlpha = 46;
constexpr int kTickAlpha = 60;
constexpr int kMarkAlpha = 150;
constexpr int kTenths = 10; ///< ticks on each side
constexpr double kQuarters = 4.0;

} // namespace

CCorrelationMeter::CCorrelationMeter(const CRect& size, Orvel::COrvelScope* analyser)
    : IDisplayControl(size, analyser) {}

CRect CCorrelationMeter::barRect() const {
    const CRect& r = getViewSize();
    return CRect::ofSize(r.left + kMargin, r.top + kBarTop, r.width() - 2 * kMargin, kBarHeight);
}

/// From the mark in the middle; its end stands on quarters of a pixel, so that a drift nobody can
/// see paints nothing.
CRect CCorrelationMeter::fillRect() const {
    const CRect bar = barRect();
    const CRect inside = bar.inset(kFillInset, kFillInset);
    const double centre = bar.centre().x;
    const double reach = std::round(bar.width() * 0.5 * double{value_} * kQuarters) / kQuarters;
    return value_ > 0 ? CRect{centre - 1, inside.top, std::min(centre + reach, inside.right),
                              inside.bottom}
                      : CRect{std::max(centre + reach, inside.left), inside.top, centre + 1,
                              inside.bottom};
}

CColor CCorrelationMeter::fillColor() const {
    if (std::abs(value_) <= kNearZero) return colors().warn2;
    return value_ < 0 ? colors().bad : colors().good2;
}

int CCorrelationMeter::hundredths() const { return static_cast<int>(std::lround(value_ * 100.0F)); }

bool CCorrelationMeter::setValue(float value) {
    const auto looks = [this] { return std::tuple(fillRect(), fillColor(), hundredths()); };
    const auto before = looks();
    value_ = std::isnan(value) ? 0.0F : std::clamp(value, -1.0F, 1.0F);
    return looks() != before;
}

void CCorrelationMeter::onIdle() {
    if (analyser() == nullptr || !isVisible()) return;
    if (setValue(analyser()->display().correlation)) setDirty(true);
}

void CCorrelationMeter::drawScale(CDrawContext& context) const {
    const CRect bar = barRect();
    const double centre = bar.centre().x;
    const double baseline = getViewSize().top + kTextBaseline;
    context.setFont(kDefaultFont, kTextSize, kRegularFont);
    context.setFontColor(colors().text2);
    context.drawStringAt("-1 Antiphase", {bar.left, baseline});
    context.drawStringAt("0 Stereo", {centre, baseline}, HorizontalAlign::kCentre);
    context.drawStringAt("+1 Mono", {bar.right, baseline}, HorizontalAlign::kRight);
    context.setFillColor(kBed);
    context.drawRoundRect(bar, kRadius, kFilled);
    context.setLineWidth(1.0);
    context.setFrameColor(colors().text1.withAlpha(kOutlineAlpha));
    context.drawRoundRect(bar.inset(0.5, 0.5), kRadius, kStroked);

    context.setFillColor(colors().text1.withAlpha(kTickAlpha));
    for (int tick = 1 - kTenths; tick < kTenths; ++tick) {
        if (tick == 0) continue;
        const double x = centre + tick * bar.width() / (2 * kTenths);
        const double height = tick % 5 == 0 ? 5.0 : 2.0;
        context.drawRect({x, bar.bottom - 1 - height, x + 1, bar.bottom - 1}, kFilled);
    }
}

void CCorrelationMeter::draw(CDrawContext& context) {
    scale_.draw(context, getViewSize(), [this](CDrawContext& still) { drawScale(still); });
    const CRect bar = barRect();
    const double centre = bar.centre().x;
    const double baseline = getViewSize().top + kTextBaseline;
    context.setFont(kDefaultFont, kTextSize, kBoldFont);
    context.setFontColor(colors().main.withAlpha(255));
    context.drawStringAt(numberText(hundredths() / 100.0, 2, true),
                         {std::floor(bar.left + kNumberPlace * bar.width()), baseline},
                         HorizontalAlign::kCentre);

    context.setFillColor(fillColor());
    context.drawRect(fillRect(), kFilled);
    context.setFillColor(colors().text1.withAlpha(kMarkAlpha));
    context.drawRect({centre - 1, bar.top - 1, centre + 1, bar.bottom + 1}, kFilled);
    IDisplayControl::draw(context);
}

} // namespace Sorel
