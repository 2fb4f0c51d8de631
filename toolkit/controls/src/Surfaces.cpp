#include "controls/Surfaces.h"

#include "controls/Palette.h"

namespace Sorel {

namespace {
constexpr int kDarkTextAbove = 127; // level of the flash from which dark letters read better
constexpr CColor kDarkText{28, 28, 36, 255};

CRect onPixelCentres(const CRect& rect) { return rect.inset(0.5, 0.5); }
} // namespace

void drawField(CDrawContext& context, const CRect& rect, double radius) {
    context.setDrawMode(0);
    context.setFillColor(Palette::kLip);
    context.drawRoundRect(rect.moved(0.0, 1.0), static_cast<float>(radius), kFilled);
    context.fillRoundRect(rect, radius,
                          CLinearGradient::vertical(rect.top, rect.bottom)
                              .stop(0.0, Palette::kFieldTop)
                              .stop(1.0, Palette::kFieldBottom));
    drawFieldFocus(context, rect, Palette::kFieldOutline, radius);
}

void drawFieldFocus(CDrawContext& context, const CRect& rect, CColor color, double radius) {
    context.setLineWidth(1.0);
    context.setFrameColor(color);
    context.drawRoundRect(onPixelCentres(rect), static_cast<float>(radius - 0.5), kStroked);
}

void drawRaised(CDrawContext& context, const CRect& rect, double radius, int lit) {
    const double amount = lit / 255.0;
    context.setDrawMode(0);
    context.setFillColor(Palette::kRaisedShadow);
    context.drawRoundRect(rect.moved(0.0, 1.0), static_cast<float>(radius), kFilled);
    context.fillRoundRect(rect, radius,
                          CLinearGradient::vertical(rect.top, rect.bottom)
                              .stop(0.0, Palette::kRaisedTop.mixed(Palette::kGold, amount))
                              .stop(1.0, Palette::kRaisedBottom.mixed(Palette::kGold, amount)));
    context.setLineWidth(1.0);
    context.setFrameColor(Palette::kRaisedLight);
    context.drawLine(rect.left + radius, rect.top + 1.5, rect.right - radius, rect.top + 1.5);
    drawFieldFocus(context, rect, Palette::kRaisedOutline, radius);
}

void drawCommandButton(
    CDrawContext& context, const CRect& rect, const char* title, int lit, bool active) {
    drawRaised(context, rect, 4.0, lit);
    context.setFont(kDefaultFont, 11.0, kRegularFont);
    context.setFontColor(lit > kDarkTextAbove ? kDarkText
                         : active             ? Palette::kBright
                                              : Palette::kBright.faded(0.4));
    context.drawString(title, rect, true, HorizontalAlign::kCentre);
}

} // namespace Sorel
