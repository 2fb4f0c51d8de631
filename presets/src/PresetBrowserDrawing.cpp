// How the preset browser looks: a sunken field with the name, a raised pair of arrows.
#include "controls/Palette.h"
#include "controls/Surfaces.h"
#include "draw/Bitmap.h"
#include "presets/PresetBrowser.h"

#include <string_view>

namespace Sorel {

namespace {
constexpr double kRadius = 4.0;
constexpr double kArrowHeight = 21.0;
constexpr double kNameMargin = 8.0;
constexpr double kNameSize = 11.0;
constexpr double kDividerInset = 3.0;
constexpr int kFieldHover = 8;  // alpha of white over the field
constexpr int kArrowHover = 14; // alpha of white over the cell
constexpr CColor kActiveOutline{250, 200, 60, 170};
constexpr const char* kEllipsis = "\xE2\x80\xA6";

void drawArrow(CDrawContext& context, CBitmap* picture, const CRect& cell, bool pressed) {
    if (picture != nullptr) picture->draw(context, cell, {0.0, pressed ? kArrowHeight : 0.0});
}

std::string shortened(CDrawContext& context, std::string_view text, double width) {
    if (context.getStringWidth(text) <= width) return std::string(text);
    while (!text.empty()) {
        text = cutBetweenCharacters(text, text.size() - 1);
        const std::string shown = std::string(text) + kEllipsis;
        if (context.getStringWidth(shown) <= width) return shown;
    }
    return kEllipsis;
}
} // namespace

void CPresetBrowser::draw(CDrawContext& context) {
    drawNameField(context);
    drawArrows(context);
    setDirty(false);
}

void CPresetBrowser::drawNameField(CDrawContext& context) {
    const CRect field = fieldRect();
    const bool open = isMenuOpen();
    drawField(context, field, kRadius);
    if (open || isTyping()) {
        drawFieldFocus(context, field, kActiveOutline, kRadius);
    } else if (hovered_ == Part::kField) {
        context.setFillColor(kWhiteCColor.withAlpha(kFieldHover));
        context.drawRoundRect(field.inset(1.0, 1.0), static_cast<float>(kRadius - 1.0), kFilled);
    }
    if (!isTyping()) drawName(context);
    drawArrow(context, arrowDown_.get(), downArrowRect(), open);
}

void CPresetBrowser::drawName(CDrawContext& context) {
    CRect place = nameRect();
    place.left += kNameMargin;
    context.setFont(kDefaultFont, kNameSize, kRegularFont);
    context.setFontColor(Palette::kBright);
    context.drawString(shortened(context, getText(), place.width()), place, true,
                       HorizontalAlign::kLeft);
}

void CPresetBrowser::drawArrows(CDrawContext& context) {
    const CRect left = previousRect();
    const CRect right = nextRect();
    const CRect pair{left.left, left.top, right.right, right.bottom};
    drawRaised(context, pair, kRadius);
    if (pressed_ == Part::kNone && (hovered_ == Part::kPrevious || hovered_ == Part::kNext)) {
        CRect cell = (hovered_ == Part::kPrevious ? left : right).moved(1.0, 0.0).inset(0.0, 1.0);
        if (hovered_ == Part::kPrevious) cell.right -= 1.0;
        if (hovered_ == Part::kNext) cell.right -= 2.0; // inside the outline, as the pictures
        context.setFillColor(kWhiteCColor.withAlpha(kArrowHover));
        context.drawRoundRect(cell, 3.0F, kFilled);
    }
    drawArrow(context, arrowLeft_.get(), left, pressed_ == Part::kPrevious);
    drawArrow(context, arrowRight_.get(), right, pressed_ == Part::kNext);
    context.setLineWidth(1.0);
    context.setFrameColor(Palette::kRaisedOutline);
    const double divider = right.left + 0.5;
    context.drawLine(divider, pair.top + kDividerInset, divider, pair.bottom - kDividerInset);
}

} // namespace Sorel
