// An open popup menu with its sub-menus.
#include "common/MenuStack.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace Sorel {

using namespace MenuMetrics;

MenuStack::MenuStack(MenuRequest request, const Setting& setting, MenuTextWidth textWidth)
    : request_(std::move(request))
    , anchor_(setting.anchor)
    , workArea_(setting.workArea)
    , textWidth_(std::move(textWidth))
    , mouse_(setting.mouse)
    , start_(setting.mouse)
    , startTime_(setting.now)
    , pressed_(setting.pressed) {
    columns_.push_back(
        std::make_unique<MenuColumn>(request_.items, request_.minWidth, workArea_, textWidth_));
    placeRoot();
}

// ---- Placement ---------------------------------------------------------------------------------

void MenuStack::placeRoot() {
    MenuColumn& root = at(0);
    const double height = root.rect().height();
    const double below = workArea_.bottom - anchor_.bottom;
    const double above = anchor_.top - workArea_.top;
    double y = anchor_.bottom;
    if (height > below && (height <= above || above > below)) y = anchor_.top - height;
    const double x = std::min(anchor_.left, workArea_.right - root.rect().width());
    root.moveTo({std::max(x, workArea_.left),
                 std::max(std::min(y, workArea_.bottom - height), workArea_.top)});
}

void MenuStack::placeSubmenu(MenuColumn& submenu, const MenuColumn& parent, int row) const {
    const double width = submenu.rect().width();
    double x = parent.rect().right + kGap;
    if (x + width > workArea_.right) {
        const double left = parent.rect().left - kGap - width;
        x = left >= workArea_.left ? left : std::max(workArea_.left, workArea_.right - width);
    }
    const double y = parent.rowRect(row).top - kEdge;
    submenu.moveTo(
        {x, std::max(std::min(y, workArea_.bottom - submenu.rect().height()), workArea_.top)});
}

// ---- Columns -----------------------------------------------------------------------------------

int MenuStack::columnAt(CPoint where) const {
    for (int i = columnCount() - 1; i >= 0; --i) {
        const CRect& rect = column(i).rect();
        if (where.x >= rect.left && where.x < rect.right && where.y >= rect.top &&
            where.y < rect.bottom)
            return i;
    }
    return -1;
}

bool MenuStack::hasSubmenu(int index, int row) const {
    return column(index).isSelectable(row) && !column(index).item(row).submenu.empty();
}

void MenuStack::openSubmenu(int index, int row) {
    if (!hasSubmenu(index, row)) return;
    if (columnCount() > index + 1 && openers_[static_cast<std::size_t>(index)] == row) return;
    closeBelow(index);
    const MenuColumn& parent = column(index);
    auto submenu =
        std::make_unique<MenuColumn>(parent.item(row).submenu, 0.0, workArea_, textWidth_);
    placeSubmenu(*submenu, parent, row);
    columns_.push_back(std::move(submenu));
    openers_.push_back(row);
    at(index).setHover(row);
    openAt_ = 0;
}

void MenuStack::closeBelow(int index) {
    columns_.resize(std::min(columns_.size(), static_cast<std::size_t>(index) + 1));
    openers_.resize(columns_.size() - 1);
    aimUntil_ = 0;
}

void MenuStack::finish(int id) {
    if (finished_) return;
    finished_ = true;
    result_ = id;
}

void MenuStack::choose(int index, int row) {
    if (!column(index).isSelectable(row)) return;
    if (hasSubmenu(index, row))
        openSubmenu(index, row);
    else
        finish(column(index).item(row).id);
}

void MenuStack::lightRow(int index, int row) {
    closeBelow(index);
    at(index).setHover(row);
    at(index).scrollTo(row);
    openAt_ = 0;
}

// ---- Mouse -------------------------------------------------------------------------------------

/// True when `to` lies in the triangle between `from` and the near edge of the sub-menu.
bool MenuStack::headsForSubmenu(CPoint from, CPoint to, int index) const {
    if (index + 1 >= columnCount()) return false;
    const CRect& submenu = column(index + 1).rect();
    const bool onTheRight = submenu.left >= column(index).rect().centre().x;
    const double edge = onTheRight ? submenu.left : submenu.right;
    const double run = edge - from.x;
    const double step = to.x - from.x;
    if (step == 0.0 || (run > 0.0) != (step > 0.0) || std::abs(step) > std::abs(run)) return false;
    const double part = step / run;
    return to.y >= from.y + (submenu.top - from.y) * part - 1.0 &&
           to.y <= from.y + (submenu.bottom - from.y) * part + 1.0;
}

void MenuStack::hoverAt(int index, int row, std::uint64_t now) {
    MenuColumn& lit = at(index);
    // Columns on the way here keep the row they were opened from.
    for (int i = 0; i < index; ++i)
        at(i).setHover(openers_[static_cast<std::size_t>(i)]);
    const bool opened = columnCount() > index + 1;
    if (opened && openers_[static_cast<std::size_t>(index)] == row) {
        lit.setHover(row);
        for (int i = index + 1; i < columnCount(); ++i)
            at(i).setHover(i + 1 < columnCount() ? openers_[static_cast<std::size_t>(i)] : -1);
        return;
    }
    const bool changed = lit.hover() != row;
    if (opened) closeBelow(index);
    lit.setHover(row);
    if (changed || opened) openAt_ = hasSubmenu(index, row) ? now + kOpenMilliseconds : 0;
}

void MenuStack::onMouseMoved(CPoint where, std::uint64_t now) {
    if (finished_ || where == mouse_) return;
    const CPoint from = std::exchange(mouse_, where);
    const int index = columnAt(where);
    if (index < 0) {
        // Nothing is lit but the way to the innermost column.
        at(columnCount() - 1).setHover(-1);
        openAt_ = 0;
        return;
    }
    visitedPressed_ = visitedPressed_ || pressed_;
    const int row = column(index).rowAt(where);
    const bool otherRow =
        index + 1 < columnCount() && row != openers_[static_cast<std::size_t>(index)];
    if (otherRow && headsForSubmenu(from, where, index)) {
        if (aimUntil_ == 0) aimUntil_ = now + kAimMilliseconds;
        return;
    }
    aimUntil_ = 0;
    hoverAt(index, row, now);
}

void MenuStack::onMouseDown(CPoint where, std::uint64_t now) {
    if (finished_) return;
    onMouseMoved(where, now);
    pressed_ = true;
    const int index = columnAt(where);
    visitedPressed_ = index >= 0;
    if (index < 0) return dismiss();
    pressBegan_ = true;
    const int row = column(index).rowAt(where);
    hoverAt(index, row, now);
    openSubmenu(index, row);
}

void MenuStack::onMouseUp(CPoint where, std::uint64_t now) {
    if (finished_) return;
    onMouseMoved(where, now);
    const bool began = std::exchange(pressBegan_, false);
    const bool visited = std::exchange(visitedPressed_, false);
    pressed_ = false;
    const bool opening = !began && now - startTime_ < kClickMilliseconds &&
                         std::hypot(where.x - start_.x, where.y - start_.y) < kClickDistance;
    const int index = columnAt(where);
    if (index < 0) {
        if (visited && !anchor_.contains(where)) dismiss();
        return;
    }
    if (opening) return;
    // A release that comes from elsewhere chooses only what the mouse was moved to.
    if (began || visited) choose(index, column(index).rowAt(where));
}

void MenuStack::onWheel(CPoint where, double notches, std::uint64_t now) {
    const int index = columnAt(where);
    if (finished_ || index < 0 || !column(index).isScrollable()) return;
    closeBelow(index);
    at(index).scrollBy(-notches * 2.0 * kRow);
    hoverAt(index, column(index).rowAt(where), now);
}

// ---- Keys --------------------------------------------------------------------------------------

/// The innermost column with a lit row of its own; keys act there.
int MenuStack::keyColumn() const {
    int index = columnCount() - 1;
    while (index > 0 && column(index).hover() < 0)
        --index;
    return index;
}

void MenuStack::onKey(const KeyEvent& key, std::uint64_t now) {
    if (finished_ || column(0).count() == 0)
        return key.virtualKey == Key::kEscape ? dismiss() : void();
    const int index = keyColumn();
    const int lit = column(index).hover();
    switch (key.virtualKey) {
    case Key::kUp:
        return lightRow(index, column(index).nextSelectable(lit, -1));
    case Key::kDown:
        return lightRow(index, column(index).nextSelectable(lit, 1));
    case Key::kHome:
    case Key::kPageUp:
        return lightRow(index, column(index).nextSelectable(-1, 1));
    case Key::kEnd:
    case Key::kPageDown:
        return lightRow(index, column(index).nextSelectable(-1, -1));
    case Key::kRight:
    case Key::kReturn:
    case Key::kSpace:
        if (hasSubmenu(index, lit)) {
            openSubmenu(index, lit);
            at(index + 1).setHover(column(index + 1).nextSelectable(-1, 1));
        } else if (key.virtualKey != Key::kRight) {
            choose(index, lit);
        }
        return;
    case Key::kLeft:
        if (columnCount() > 1) closeBelow(std::max(0, index - 1));
        return;
    case Key::kEscape:
        if (columnCount() == 1) return dismiss();
        closeBelow(columnCount() - 2);
        return;
    default:
        break;
    }
    if (key.character <= 0x20) return;
    const int row = column(index).nextBeginningWith(static_cast<char32_t>(key.character));
    if (row >= 0) lightRow(index, row);
    if (hasSubmenu(index, row)) openAt_ = now + kOpenMilliseconds;
}

// ---- Time --------------------------------------------------------------------------------------

void MenuStack::onIdle(std::uint64_t now) {
    if (finished_) return;
    if (aimUntil_ != 0 && now >= aimUntil_) {
        // The mouse stopped on its way: what it stands on counts.
        aimUntil_ = 0;
        const int index = columnAt(mouse_);
        if (index >= 0) hoverAt(index, column(index).rowAt(mouse_), now);
    }
    if (openAt_ != 0 && now >= openAt_) {
        openAt_ = 0;
        const int index = keyColumn();
        openSubmenu(index, column(index).hover());
    }
    const int index = columnAt(mouse_);
    const int arrow = index < 0 ? 0 : column(index).scrollArrowAt(mouse_);
    if (arrow != 0 && now - scrolledAt_ >= kScrollMilliseconds) {
        scrolledAt_ = now;
        closeBelow(index);
        at(index).scrollBy(arrow * kRow * 0.5);
    }
}

} // namespace Sorel
