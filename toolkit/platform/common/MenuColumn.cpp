// One open column of a popup menu.
#include "common/MenuColumn.h"

#include "core/Utf8.h"

#include <algorithm>
#include <cmath>

namespace Sorel {

namespace Utf8 = Core::Utf8;

using namespace MenuMetrics;

namespace {

/// Good enough for the letters that begin menu items: ASCII, Latin-1, Greek and Cyrillic.
char32_t lowerCase(char32_t code) {
    const bool plain = (code >= 'A' && code <= 'Z') ||
                       (code >= 0xC0 && code <= 0xDE && code != 0xD7) ||
                       (code >= 0x391 && code <= 0x3A9) || (code >= 0x410 && code <= 0x42F);
    if (plain) return code + 0x20;
    return code >= 0x400 && code <= 0x40F ? code + 0x50 : code;
}

} // namespace

MenuColumn::MenuColumn(const std::vector<MenuItem>& items,
                       double minWidth,
                       const CRect& room,
                       const MenuTextWidth& textWidth)
    : items_(&items) {
    const double widest = std::min(kMaxWidth, room.width());
    double width = std::max(kMinWidth, std::ceil(minWidth));
    double y = kEdge;
    for (const MenuItem& entry : items) {
        tops_.push_back(y);
        y += entry.separator ? kSeparator : kRow;
        if (entry.separator) continue;
        const double text = textWidth(entry.title, entry.isTitle);
        width = std::max(width, std::min(widest, std::ceil(kTextLeft + text + kTextRight)));
    }
    tops_.push_back(y);
    contentHeight_ = y + kEdge;
    rect_ = {0.0, 0.0, width, std::min(contentHeight_, std::max(room.height(), kRow * 3.0))};
}

void MenuColumn::moveTo(CPoint topLeft) {
    rect_ =
        CRect::ofSize(std::round(topLeft.x), std::round(topLeft.y), rect_.width(), rect_.height());
}

bool MenuColumn::isSelectable(int row) const {
    if (row < 0 || row >= count()) return false;
    const MenuItem& entry = item(row);
    return !entry.separator && !entry.isTitle && !entry.disabled;
}

void MenuColumn::setHover(int row) {
    if (!isSelectable(row)) row = -1;
    if (row == hover_) return;
    hover_ = row;
    ++revision_;
}

int MenuColumn::nextSelectable(int from, int step) const {
    const int rows = count();
    int row = from < 0 && step < 0 ? rows : from;
    for (int tried = 0; tried < rows; ++tried) {
        row = (row + step + rows) % rows;
        if (isSelectable(row)) return row;
    }
    return -1;
}

int MenuColumn::nextBeginningWith(char32_t character) const {
    const int rows = count();
    for (int i = 1; i <= rows; ++i) {
        const int row = (hover_ + i + rows) % rows;
        const std::string& title = item(row).title;
        if (isSelectable(row) && !title.empty() &&
            lowerCase(Utf8::decode(title, 0).code) == lowerCase(character))
            return row;
    }
    return -1;
}

CRect MenuColumn::rowRect(int row) const {
    const auto at = static_cast<std::size_t>(row);
    const double top = rect_.top - scroll_;
    return {rect_.left, top + tops_[at], rect_.right, top + tops_[at + 1]};
}

CRect MenuColumn::rowArea() const {
    return {rect_.left,
            rect_.top + (canScrollUp()    ? kScrollArrow
                         : isScrollable() ? 1.0
                                          : 0.0),
            rect_.right,
            rect_.bottom - (canScrollDown()  ? kScrollArrow
                            : isScrollable() ? 1.0
                                             : 0.0)};
}

int MenuColumn::rowAt(CPoint point) const {
    const CRect area = rowArea();
    if (point.x < area.left || point.x >= area.right || point.y < area.top ||
        point.y >= area.bottom)
        return -1;
    for (int row = 0; row < count(); ++row) {
        const CRect rect = rowRect(row);
        if (point.y >= rect.top && point.y < rect.bottom) return row;
    }
    return -1;
}

double MenuColumn::maxScroll() const { return std::max(0.0, contentHeight_ - rect_.height()); }

int MenuColumn::scrollArrowAt(CPoint point) const {
    if (point.x < rect_.left || point.x >= rect_.right) return 0;
    if (canScrollUp() && point.y >= rect_.top && point.y < rect_.top + kScrollArrow) return -1;
    if (canScrollDown() && point.y < rect_.bottom && point.y >= rect_.bottom - kScrollArrow)
        return 1;
    return 0;
}

void MenuColumn::scrollBy(double pixels) {
    const double to = std::clamp(scroll_ + pixels, 0.0, maxScroll());
    if (to == scroll_) return;
    scroll_ = to;
    ++revision_;
}

void MenuColumn::scrollTo(int row) {
    if (row < 0 || row >= count() || !isScrollable()) return;
    const CRect wanted = rowRect(row);
    if (wanted.top < rect_.top + kScrollArrow) scrollBy(wanted.top - rect_.top - kScrollArrow);
    if (wanted.bottom > rect_.bottom - kScrollArrow)
        scrollBy(wanted.bottom - rect_.bottom + kScrollArrow);
}

} // namespace Sorel
