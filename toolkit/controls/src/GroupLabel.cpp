#include "controls/GroupLabel.h"

namespace Sorel {

namespace {
constexpr double kSize = 9.0;
constexpr double kBaseline = 9.0;
constexpr double kGap = 2.5;
constexpr int kLineAlpha = 0x55;
} // namespace

CGroupLabel::CGroupLabel(const CRect& size, const char* text, CColor color)
    : CView(size)
    , text_(text)
    , color_(color) {
    setMouseEnabled(false);
}

void CGroupLabel::draw(CDrawContext& context) {
    const CRect& rect = getViewSize();
    context.setFont(kDefaultFont, kSize, kBoldFont);
    context.setFontColor(color_);
    context.drawStringAt(text_, {rect.left, rect.top + kBaseline});
    const double left = rect.left + context.getStringWidth(text_) + kGap;
    context.setFrameColor(color_.withAlpha(kLineAlpha));
    context.setLineWidth(1.0);
    if (left < rect.right) context.drawLine(left, rect.bottom - 0.5, rect.right, rect.bottom - 0.5);
    setDirty(false);
}

} // namespace Sorel
