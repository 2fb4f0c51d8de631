// Draws the columns of a popup menu.
#include "common/MenuPainter.h"

#include "common/MenuShadow.h"
#include "core/Utf8.h"

#include <cstring>

namespace Sorel {

namespace Utf8 = Core::Utf8;

using namespace MenuMetrics;

namespace {

constexpr CColor kPanel{34, 37, 59, 255};
constexpr CColor kOutline{161, 163, 193, 70};
constexpr CColor kSeparatorLine{161, 163, 193, 44};
constexpr CColor kText{236, 236, 244, 235};
constexpr CColor kDisabledText{161, 163, 193, 110};
constexpr CColor kTitleText{161, 163, 193, 200};
constexpr CColor kHoverFill{250, 200, 60, 38};
constexpr CColor kTick{250, 200, 60, 255};
constexpr CColor kChevron{200, 201, 220, 230};
/// Behind the corners where a window cannot be seen through.
constexpr CColor kGroundBehind{20, 20, 27, 255};
constexpr double kRadius = 4.0;
constexpr double kHoverRadius = 3.0;

Counted<CDrawContext> drawingOn(CRenderer& renderer, IOSBitmap& bitmap) {
    renderer.attach(bitmap);
    auto context =
        Counted<CDrawContext>::make(nullptr, nullptr, nullptr, CDrawContext::OwnSurface::kNever);
    context->bind(&renderer, &bitmap);
    context->setClipRect(CRect::ofSize(0.0, 0.0, bitmap.width, bitmap.height));
    return context;
}

void setMenuFont(CDrawContext& context, bool title) {
    if (title)
        context.setFont(kDefaultFont, kTitleFontSize, kBoldFont);
    else
        context.setFont(kDefaultFont, kFontSize, kRegularFont);
}

void strokePath(CDrawContext& context, const CPath& path, CColor color, double width) {
    context.setFrameColor(color);
    context.setLineWidth(width);
    context.drawPath(path, kStroked);
}

/// `title`, or its beginning with an ellipsis when it is wider than `room`.
std::string fitted(CDrawContext& context, const std::string& title, double room) {
    if (context.getStringWidth(title) <= room) return title;
    std::string text = title;
    while (!text.empty()) {
        text.resize(Utf8::boundaryAtOrBefore(text, text.size() - 1));
        if (context.getStringWidth(text + "\u2026") <= room) break;
    }
    return text + "\u2026";
}

} // namespace

MenuPicture::MenuPicture(const MenuColumn& column, bool withShadow)
    : column_(column)
    , origin_(withShadow ? CPoint{kShadowSide, kShadowTop} : CPoint{}) {
    const int width = static_cast<int>(column.rect().width()) + (withShadow ? 2 * kShadowSide : 0);
    const int height =
        static_cast<int>(column.rect().height()) + (withShadow ? kShadowTop + kShadowBottom : 0);
    if (!ground_.create(width, height) || !picture_.create(width, height)) return;
    context_ = drawingOn(renderer_, ground_);
    if (withShadow)
        drawMenuShadow(ground_, local(column.rect()));
    else
        renderer_.clear(kGroundBehind);
    drawGround();
    context_ = drawingOn(renderer_, picture_);
}

CRect MenuPicture::local(const CRect& onScreen) const {
    return onScreen.moved(origin_ - column_.rect().topLeft());
}

void MenuPicture::drawGround() {
    const CRect panel = local(column_.rect());
    context_->setFillColor(kPanel);
    context_->drawRoundRect(panel, static_cast<float>(kRadius), kFilled);
    context_->setFrameColor(kOutline);
    context_->setLineWidth(1.0);
    context_->drawRoundRect(panel.inset(0.5, 0.5), static_cast<float>(kRadius - 0.5), kStroked);
}

bool MenuPicture::update() {
    if (!context_ || (drawn_ && revision_ == column_.revision())) return false;
    drawn_ = true;
    revision_ = column_.revision();
    std::memcpy(picture_.getPixels(), ground_.getPixels(),
                static_cast<std::size_t>(ground_.byteSize));
    drawRows();
    drawScrollArrows();
    return true;
}

void MenuPicture::drawRows() {
    const CRect area = column_.rowArea();
    context_->setClipRect(local(area));
    for (int row = 0; row < column_.count(); ++row) {
        const CRect rect = column_.rowRect(row);
        if (rect.bottom > area.top && rect.top < area.bottom) drawRow(row);
    }
    context_->setClipRect(CRect::ofSize(0.0, 0.0, picture_.width, picture_.height));
}

void MenuPicture::drawRow(int row) {
    const MenuItem& item = column_.item(row);
    const CRect rect = local(column_.rowRect(row));
    CDrawContext& context = *context_;
    if (item.separator) {
        const double y = rect.top + 4.0;
        context.setFillColor(kSeparatorLine);
        context.drawRect({rect.left + 8.0, y, rect.right - 8.0, y + 1.0}, kFilled);
        return;
    }
    if (row == column_.hover()) {
        context.setFillColor(kHoverFill);
        context.drawRoundRect(rect.inset(kEdge, 0.0), static_cast<float>(kHoverRadius), kFilled);
    }
    if (item.checked) {
        CPath tick;
        tick.moveTo(rect.left + 11.0, rect.top + 10.5);
        tick.lineTo(rect.left + 14.0, rect.top + 13.5);
        tick.lineTo(rect.left + 19.0, rect.top + 7.5);
        strokePath(context, tick, item.disabled ? kTick.withAlpha(110) : kTick, 1.6);
    }
    if (!item.submenu.empty()) {
        CPath chevron;
        chevron.moveTo(rect.right - 14.0, rect.top + 6.0);
        chevron.lineTo(rect.right - 10.0, rect.top + 10.0);
        chevron.lineTo(rect.right - 14.0, rect.top + 14.0);
        strokePath(context, chevron, item.disabled ? kChevron.withAlpha(110) : kChevron, 1.5);
    }
    setMenuFont(context, item.isTitle);
    context.setFontColor(item.isTitle ? kTitleText : item.disabled ? kDisabledText : kText);
    // Headings stand where ticks do, left of what they head.
    const double left = rect.left + (item.isTitle ? 11.0 : kTextLeft);
    const double room = rect.right - left - (item.submenu.empty() ? 11.0 : 20.0);
    context.drawStringAt(fitted(context, item.title, room), {left, rect.top + 14.0});
}

void MenuPicture::drawScrollArrows() {
    const CRect panel = local(column_.rect());
    const double x = std::round(panel.centre().x);
    const auto arrow = [this, x](double tip, double direction) {
        CPath path;
        path.moveTo(x - 4.0, tip - direction * 4.0);
        path.lineTo(x, tip);
        path.lineTo(x + 4.0, tip - direction * 4.0);
        strokePath(*context_, path, kChevron, 1.5);
    };
    if (column_.canScrollUp()) arrow(panel.top + 5.0, -1.0);
    if (column_.canScrollDown()) arrow(panel.bottom - 5.0, 1.0);
}

MenuTextWidth menuTextWidth() {
    struct Measure {
        Measure() {
            surface.create(1, 1);
            context = drawingOn(renderer, surface);
        }
        CMemoryBitmap surface;
        CRenderer renderer;
        Counted<CDrawContext> context;
    };
    return [measure = std::make_shared<Measure>()](const std::string& text, bool title) {
        setMenuFont(*measure->context, title);
        return measure->context->getStringWidth(text);
    };
}

} // namespace Sorel
