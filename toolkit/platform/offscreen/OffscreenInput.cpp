// A window in memory: what a user does with it.
#include "offscreen/Popups.h"

#include "core/Utf8.h"

namespace Sorel {

namespace Utf8 = Core::Utf8;

namespace {

constexpr std::int32_t kButtonBits =
    Buttons::kLeft | Buttons::kMiddle | Buttons::kRight | Buttons::kExtra1 | Buttons::kExtra2;
constexpr int kNotHandled = 2;
constexpr int kKeyNotTaken = -1;

/// The character that comes with a key on a keyboard.
std::int32_t characterOf(std::uint8_t virtualKey) {
    switch (virtualKey) {
    case Key::kBack:
        return 8;
    case Key::kTab:
        return 9;
    case Key::kReturn:
        return 13;
    case Key::kEscape:
        return 27;
    case Key::kSpace:
        return ' ';
    case Key::kEquals:
        return '9';
    default:
        break;
    }
    if (virtualKey >= Key::kNumpad0 && virtualKey < Key::kNumpad0 + 10)
        return '0' + virtualKey - Key::kNumpad0;
    return 0;
}

} // namespace

void COffscreenFrame::moveMouse(CPoint where, std::int32_t modifiers) {
    if (events_ == nullptr) return;
    const Counted<COffscreenFrame> hold(this);
    mouse_ = where;
    if (const auto menu = popups_->shownMenu())
        return menu->stack->onMouseMoved(where, owner_.now_);
    const std::int32_t mask = (buttons_ & kButtonBits) | (modifiers & Buttons::kAnyModifier);
    if (!inside_) {
        inside_ = true;
        events_->platformMouseEntered(where, mask);
    }
    if (events_ != nullptr) events_->platformMouseMoved(where, mask);
}

int COffscreenFrame::press(CPoint where, std::int32_t buttons) {
    const Counted<COffscreenFrame> hold(this);
    if (where != mouse_ || !inside_) moveMouse(where, buttons);
    if (events_ == nullptr) return kNotHandled;
    if (const auto menu = popups_->shownMenu()) {
        menu->stack->onMouseDown(where, owner_.now_);
        return kNotHandled;
    }
    buttons_ |= buttons & kButtonBits;
    return events_->platformMouseDown(where, buttons_ | buttons);
}

int COffscreenFrame::releaseButtons(CPoint where) {
    const Counted<COffscreenFrame> hold(this);
    if (where != mouse_) moveMouse(where);
    if (events_ == nullptr) return kNotHandled;
    if (const auto menu = popups_->shownMenu()) menu->stack->onMouseUp(where, owner_.now_);
    // The frame hears of the end of each press it was told of, also when a menu opened meanwhile.
    if (buttons_ == 0) return kNotHandled;
    buttons_ = 0;
    return events_->platformMouseUp(where, 0);
}

void COffscreenFrame::click(CPoint where, std::int32_t buttons) {
    const Counted<COffscreenFrame> hold(this);
    press(where, buttons);
    releaseButtons(where);
}

void COffscreenFrame::doubleClick(CPoint where) {
    const Counted<COffscreenFrame> hold(this);
    click(where);
    click(where, Buttons::kLeft | Buttons::kDoubleClick);
}

void COffscreenFrame::drag(CPoint from, CPoint to, std::int32_t buttons) {
    constexpr int kSteps = 8;
    const Counted<COffscreenFrame> hold(this);
    press(from, buttons);
    for (int i = 1; i <= kSteps; ++i)
        moveMouse({from.x + (to.x - from.x) * i / kSteps, from.y + (to.y - from.y) * i / kSteps},
                  buttons);
    releaseButtons(to);
}

bool COffscreenFrame::wheel(CPoint where, float distance, std::int32_t modifiers, int axis) {
    const Counted<COffscreenFrame> hold(this);
    if (where != mouse_ || !inside_) moveMouse(where, modifiers);
    if (events_ == nullptr) return false;
    if (const auto menu = popups_->shownMenu()) {
        menu->stack->onWheel(where, distance, owner_.now_);
        return true;
    }
    return events_->platformWheel(where, axis, distance, buttons_ | modifiers);
}

void COffscreenFrame::leave() {
    if (events_ == nullptr || !inside_) return;
    const Counted<COffscreenFrame> hold(this);
    inside_ = false;
    events_->platformMouseExited(mouse_, buttons_);
}

int COffscreenFrame::key(std::uint8_t virtualKey, std::uint8_t modifiers) {
    return key(KeyEvent{characterOf(virtualKey), virtualKey, modifiers});
}

int COffscreenFrame::key(const KeyEvent& event) {
    if (events_ == nullptr) return kKeyNotTaken;
    const Counted<COffscreenFrame> hold(this);
    if (const auto menu = popups_->shownMenu()) {
        menu->stack->onKey(event, owner_.now_);
        return 1;
    }
    const int answer = events_->platformKeyDown(event);
    if (events_ != nullptr) events_->platformKeyUp(event);
    return answer;
}

void COffscreenFrame::type(const std::string& utf8) {
    const Counted<COffscreenFrame> hold(this);
    for (std::size_t at = 0; at < utf8.size();) {
        const Utf8::Decoded next = Utf8::decode(utf8, at);
        at += next.length;
        const std::uint8_t code = next.code == ' '   ? Key::kSpace
                                  : next.code == '9' ? Key::kEquals
                                                     : Key::kNone;
        key(KeyEvent{static_cast<std::int32_t>(next.code), code, 0});
    }
}

bool COffscreenFrame::dropFiles(const std::vector<std::string>& paths, CPoint where) {
    if (events_ == nullptr) return false;
    const Counted<COffscreenFrame> hold(this);
    std::vector<CDragContainer::Entry> entries;
    entries.reserve(paths.size());
    for (const std::string& path : paths)
        entries.push_back({CDragContainer::Kind::kFilePath, path});
    drag_ = Counted<CDragContainer>::make(std::move(entries));
    const Counted<CDragContainer> drag = drag_;
    dropAccepted_ = false;
    mouse_ = where;
    bool dropped = false;
    events_->platformDragEnter(*drag, where);
    if (events_ != nullptr) events_->platformDragMove(*drag, where);
    if (events_ != nullptr && dropAccepted_)
        dropped = events_->platformDrop(*drag, where);
    else if (events_ != nullptr)
        events_->platformDragLeave(*drag, where);
    drag_ = nullptr;
    return dropped;
}

void COffscreenFrame::loseFocus() {
    if (events_ == nullptr) return;
    const Counted<COffscreenFrame> hold(this);
    focused_ = false;
    popups_->textLink->focusLost();
    if (events_ != nullptr) events_->platformFocusLost();
}

void COffscreenFrame::closeRequest() {
    if (events_ != nullptr) events_->platformCloseRequested();
}

bool COffscreenFrame::chooseMenuItem(const std::string& path) {
    const auto menu = popups_->shownMenu();
    if (!menu || menu->stack->isFinished()) return false;
    MenuStack& stack = *menu->stack;
    const int index = stack.columnCount() - 1;
    const MenuColumn& column = stack.column(index);
    for (int row = 0; row < column.count(); ++row) {
        const MenuItem& item = column.item(row);
        const bool leaf = item.title == path && item.submenu.empty();
        const bool way = !item.submenu.empty() && path.starts_with(item.title + "/");
        if ((!leaf && !way) || !column.isSelectable(row)) continue;
        stack.lightRow(index, row);
        click(column.rowRect(row).centre());
        return leaf || chooseMenuItem(path.substr(item.title.size() + 1));
    }
    return false;
}

} // namespace Sorel
