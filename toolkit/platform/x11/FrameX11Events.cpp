// A frame's window on an X11 desktop: what the display tells it.
#include "x11/FrameX11.h"

#include <cmath>
#include <cstdlib>

namespace Sorel {

namespace {

/// No idle takes longer because of a storm of events; the rest comes with the next one.
constexpr int kMaxEventsAnIdle = 500;

std::int32_t maskOfButton(std::uint8_t button) {
    switch (button) {
    case 1:
        return Buttons::kLeft;
    case 2:
        return Buttons::kMiddle;
    case 3:
        return Buttons::kRight;
    case 8:
        return Buttons::kExtra1;
    case 9:
        return Buttons::kExtra2;
    default:
        return 0;
    }
}

std::int32_t modifiersOf(std::uint16_t state) {
    return ((state & XCB_MOD_MASK_SHIFT) != 0 ? Buttons::kShift : 0) |
           ((state & XCB_MOD_MASK_CONTROL) != 0 ? Buttons::kControl : 0) |
           ((state & XCB_MOD_MASK_1) != 0 ? Buttons::kAlt : 0);
}

CPoint pointOf(std::int16_t x, std::int16_t y) {
    return {static_cast<double>(x), static_cast<double>(y)};
}

template <class T>
const T& as(const xcb_generic_event_t& event) {
    return reinterpret_cast<const T&>(event);
}

} // namespace

void CFrameX11::handleEvents() {
    for (int i = 0; i < kMaxEventsAnIdle && window_ != XCB_NONE; ++i) {
        const XcbOwned<xcb_generic_event_t> event(xcb_poll_for_event(connection_->xcb()));
        if (!event) break;
        dispatch(*event);
    }
    if (window_ != XCB_NONE) flushMotion();
    if (connection_->isBroken()) windowIsGone();
}

void CFrameX11::dispatch(const xcb_generic_event_t& event) {
    const int type = event.response_type & 0x7F;
    if (type == 0) return onError(as<xcb_generic_error_t>(event));
    // The order of what happened is kept: a press finds the mouse where it was.
    if (type != XCB_MOTION_NOTIFY) flushMotion();
    if (window_ == XCB_NONE || dispatchToHelpers(event)) return;
    switch (type) {
    case XCB_EXPOSE: {
        const auto& expose = as<xcb_expose_event_t>(event);
        if (expose.window == window_)
            presenter_.invalidate(CRect::ofSize(expose.x, expose.y, expose.width, expose.height));
        break;
    }
    case XCB_MOTION_NOTIFY: {
        const auto& motion = as<xcb_motion_notify_event_t>(event);
        lastTime_ = motion.time;
        motion_ = Motion{pointOf(motion.event_x, motion.event_y), modifiersOf(motion.state)};
        break;
    }
    case XCB_BUTTON_PRESS:
        return onButtonPress(as<xcb_button_press_event_t>(event));
    case XCB_BUTTON_RELEASE:
        return onButtonRelease(as<xcb_button_release_event_t>(event));
    case XCB_ENTER_NOTIFY:
        return onEnter(as<xcb_enter_notify_event_t>(event));
    case XCB_LEAVE_NOTIFY:
        return onLeave(as<xcb_leave_notify_event_t>(event));
    case XCB_KEY_PRESS:
    case XCB_KEY_RELEASE:
        return onKey(as<xcb_key_press_event_t>(event), type == XCB_KEY_PRESS);
    case XCB_FOCUS_IN:
        if (as<xcb_focus_in_event_t>(event).detail < XCB_NOTIFY_DETAIL_POINTER) focused_ = true;
        break;
    case XCB_FOCUS_OUT:
        return onFocusOut(as<xcb_focus_out_event_t>(event));
    case XCB_CLIENT_MESSAGE:
        return onClientMessage(as<xcb_client_message_event_t>(event));
    case XCB_CONFIGURE_NOTIFY:
        return onConfigure(as<xcb_configure_notify_event_t>(event));
    case XCB_DESTROY_NOTIFY:
        if (as<xcb_destroy_notify_event_t>(event).window == window_) windowIsGone();
        break;
    default:
        break;
    }
}

/// What belongs to the keyboard's layout, to menus, the clipboard, drags and puts.
bool CFrameX11::dispatchToHelpers(const xcb_generic_event_t& event) {
    const std::uint64_t now = x11Ticks();
    const int type = event.response_type & 0x7F;
    if (type == connection_->shmCompletionEvent() && type != 0) {
        presenter_.onCompletion();
        return true;
    }
    if (keyboard_->onEvent(event)) return true;
    if (const auto menu = shownMenu(); menu && menu->onEvent(event, *keyboard_, now)) {
        // The end of a press that the frame has seen is for both.
        if (type == XCB_BUTTON_RELEASE && pressed_ != 0)
            onButtonRelease(as<xcb_button_release_event_t>(event));
        return true;
    }
    return clipboard_->onEvent(event, now) || drops_->onEvent(event, now);
}

void CFrameX11::onError(const xcb_generic_error_t& error) {
    // A failed put sends no completion.
    if (error.major_code >= 128 && presenter_.isWaiting()) presenter_.onCompletion();
    // A host's window that is not shown cannot have the keyboard.
    if (error.major_code == XCB_SET_INPUT_FOCUS) focused_ = false;
}

// ---- Mouse -------------------------------------------------------------------------------------

void CFrameX11::enterAt(CPoint where) {
    mouse_ = where;
    if (inside_) return;
    inside_ = true;
    events_->platformMouseEntered(where, pressed_);
}

void CFrameX11::exitAt(CPoint where) {
    leftWhilePressed_ = false;
    if (!inside_) return;
    inside_ = false;
    events_->platformMouseExited(where, pressed_);
}

void CFrameX11::flushMotion() {
    if (!motion_ || events_ == nullptr) return;
    const Motion motion = *motion_;
    motion_.reset();
    enterAt(motion.where);
    if (events_ != nullptr) events_->platformMouseMoved(motion.where, pressed_ | motion.modifiers);
}

void CFrameX11::onEnter(const xcb_enter_notify_event_t& event) {
    if (event.event != window_ || event.detail == XCB_NOTIFY_DETAIL_INFERIOR) return;
    leftWhilePressed_ = false;
    if (!shownMenu()) enterAt(pointOf(event.event_x, event.event_y));
}

void CFrameX11::onLeave(const xcb_leave_notify_event_t& event) {
    if (event.event != window_ || event.detail == XCB_NOTIFY_DETAIL_INFERIOR) return;
    // While a button is down the mouse is ours, wherever it goes.
    if (pressed_ != 0)
        leftWhilePressed_ = true;
    else
        exitAt(pointOf(event.event_x, event.event_y));
}

bool CFrameX11::isDoubleClick(const xcb_button_press_event_t& event) {
    const bool twice = event.detail == lastClick_.button &&
                       event.time - lastClick_.time <= kDoubleClickMilliseconds &&
                       std::abs(event.event_x - lastClick_.x) <= kDoubleClickDistance &&
                       std::abs(event.event_y - lastClick_.y) <= kDoubleClickDistance;
    lastClick_ = {event.detail, event.time, event.event_x, event.event_y};
    // A third press begins anew.
    if (twice) lastClick_.button = 0;
    return twice;
}

void CFrameX11::onButtonPress(const xcb_button_press_event_t& event) {
    lastTime_ = event.time;
    const CPoint where = pointOf(event.event_x, event.event_y);
    const std::int32_t modifiers = modifiersOf(event.state);
    enterAt(where);
    if (events_ == nullptr) return;
    if (event.detail >= 4 && event.detail <= 7) {
        const bool forward = event.detail == 4 || event.detail == 7; // up, right
        events_->platformWheel(where, event.detail >= 6 ? 0 : 1, forward ? 1.0F : -1.0F,
                               pressed_ | modifiers);
        return;
    }
    const std::int32_t button = maskOfButton(event.detail);
    if (button == 0) return;
    pressed_ |= button;
    const std::int32_t twice = isDoubleClick(event) ? Buttons::kDoubleClick : 0;
    // A window of its own takes the keyboard as windows do where nothing manages them.
    if (isOwnWindow() && !focused_) setKeyboardFocus(true);
    events_->platformMouseDown(where, pressed_ | modifiers | twice);
}

void CFrameX11::onButtonRelease(const xcb_button_release_event_t& event) {
    lastTime_ = event.time;
    const std::int32_t button = maskOfButton(event.detail);
    if (button == 0 || (pressed_ & button) == 0) return;
    pressed_ &= ~button;
    // With a menu open the event may be that of another window.
    const CPoint shift = event.event == window_ ? CPoint{} : originOnScreen();
    const CPoint where = event.event == window_ ? pointOf(event.event_x, event.event_y)
                                                : pointOf(event.root_x, event.root_y) - shift;
    events_->platformMouseUp(where, pressed_ | modifiersOf(event.state));
    if (events_ != nullptr && pressed_ == 0 && leftWhilePressed_) exitAt(where);
}

std::int32_t CFrameX11::getCurrentMouseButtons() {
    if (window_ == XCB_NONE) return 0;
    const auto pointer =
        connection_->reply(xcb_query_pointer_reply, xcb_query_pointer(connection_->xcb(), window_));
    if (!pointer) return pressed_;
    // The core protocol tells of the first five buttons only; the others are those we saw go down.
    std::int32_t mask =
        modifiersOf(pointer->mask) | (pressed_ & (Buttons::kExtra1 | Buttons::kExtra2));
    if ((pointer->mask & XCB_BUTTON_MASK_1) != 0) mask |= Buttons::kLeft;
    if ((pointer->mask & XCB_BUTTON_MASK_2) != 0) mask |= Buttons::kMiddle;
    if ((pointer->mask & XCB_BUTTON_MASK_3) != 0) mask |= Buttons::kRight;
    return mask;
}

// ---- Keys --------------------------------------------------------------------------------------

void CFrameX11::onKey(const xcb_key_press_event_t& event, bool down) {
    lastTime_ = event.time;
    bool taken = false;
    if (down) {
        const std::vector<KeyEvent> keys = keyboard_->press(event.detail);
        taken = keys.empty() && focused_; // part of a character that is being put together
        for (const KeyEvent& key : keys)
            if (events_ != nullptr && events_->platformKeyDown(key) > 0) taken = true;
    } else {
        taken = events_->platformKeyUp(keyboard_->release(event.detail)) > 0;
    }
    if (!taken) forwardKey(event, down);
}

/// The host has shortcuts of its own. What it sent itself is not sent back.
void CFrameX11::forwardKey(const xcb_key_press_event_t& event, bool down) {
    const bool sent = (event.response_type & 0x80) != 0;
    if (sent || window_ == XCB_NONE || isOwnWindow()) return;
    xcb_key_press_event_t copy = event;
    copy.event = parent_;
    copy.child = XCB_NONE;
    copy.response_type = down ? XCB_KEY_PRESS : XCB_KEY_RELEASE;
    xcb_send_event(connection_->xcb(), 1, parent_,
                   down ? XCB_EVENT_MASK_KEY_PRESS : XCB_EVENT_MASK_KEY_RELEASE,
                   reinterpret_cast<const char*>(&copy));
}

void CFrameX11::onFocusOut(const xcb_focus_out_event_t& event) {
    // A grab, ours or the window manager's, takes the keyboard only for a while.
    const bool forAWhile =
        event.mode == XCB_NOTIFY_MODE_GRAB || event.mode == XCB_NOTIFY_MODE_UNGRAB;
    if (forAWhile || event.detail == XCB_NOTIFY_DETAIL_INFERIOR ||
        event.detail >= XCB_NOTIFY_DETAIL_POINTER || !focused_)
        return;
    focused_ = false;
    focusBefore_ = XCB_NONE; // somebody else decided
    if (const auto menu = shownMenu()) menu->dismiss();
    textLink_->focusLost();
    if (events_ != nullptr) events_->platformFocusLost();
}

} // namespace Sorel
