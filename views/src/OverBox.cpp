#include "views/OverBox.h"

#include "core/NumberText.h"
#include "views/DisplayColors.h"

#include <algorithm>

namespace Sorel {

namespace {

constexpr int kFullFlash = 255;
constexpr int kCooledFlash = 85;
constexpr int kFlashStep = 15;

constexpr float kRadius = 2.0F;
constexpr double kTextSize = 9.0;
constexpr double kBaseline = 11.0;
constexpr CColor kBed{0, 0, 0, 70};
constexpr double kWhiteInText = 0.9; ///< of the text in full flash
constexpr int kBorderAlpha = 120;
constexpr int kBorderFlash = 100;

} // namespace

bool OverBox::setOvers(int overs) {
    const int limited = std::clamp(overs, 0, kMostOvers);
    if (limited == overs_) return false;
    if (limited > overs_) flash_ = kFullFlash;
    if (limited == 0) flash_ = 0;
    overs_ = limited;
    return true;
}

bool OverBox::setOldOvers(int overs) {
    bool changed = setOvers(overs);
    while (cool())
        changed = true;
    return changed;
}

bool OverBox::cool() {
    if (flash_ <= kCooledFlash || overs_ >= kMostOvers) return false;
    flash_ = std::max(flash_ - kFlashStep, kCooledFlash);
    return true;
}

void OverBox::draw(CDrawContext& context, const CRect& box) const {
    if (!box.touches(context.getClipRect())) return;
    const DisplayColors& c = displayColors();
    const double glow = flash_ / double{kFullFlash};
    const bool any = overs_ > 0;

    context.setFillColor(kBed);
    context.drawRoundRect(box, kRadius, kFilled);
    if (any) {
        context.setFillColor(c.bad.faded(glow));
        context.drawRoundRect(box, kRadius, kFilled);
    }
    context.setLineWidth(1.0);
    context.setFrameColor(
        any ? c.bad.withAlpha(kBorderAlpha + static_cast<int>(kBorderFlash * glow)) : c.gridDim);
    context.drawRoundRect(box.inset(0.5, 0.5), kRadius, kStroked);

    char text[16];
    Core::TextWriter writer(text, sizeof text);
    if (overs_ < kMostOvers)
        writer.integer(overs_).text(" Overs");
    else
        writer.text("Too Many!");
    context.setFont(kDefaultFont, kTextSize, any ? kBoldFont : kRegularFont);
    context.setFontColor(any ? c.text1.withAlpha(255).mixed(c.white, kWhiteInText * glow)
                             : c.text1);
    context.drawStringAt(text, {box.centre().x, box.top + kBaseline}, HorizontalAlign::kCentre);
}

} // namespace Sorel
