// Popup menus.
#include "x11/X11Menu.h"

#include "x11/FrameX11.h"

#include <xcb/shape.h>

namespace Sorel {

namespace {

constexpr std::uint32_t kMenuEvents = XCB_EVENT_MASK_EXPOSURE | XCB_EVENT_MASK_BUTTON_PRESS |
                                      XCB_EVENT_MASK_BUTTON_RELEASE |
                                      XCB_EVENT_MASK_POINTER_MOTION | XCB_EVENT_MASK_KEY_PRESS |
                                      XCB_EVENT_MASK_KEY_RELEASE | XCB_EVENT_MASK_ENTER_WINDOW;
constexpr std::uint16_t kPointerEvents =
    XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE | XCB_EVENT_MASK_POINTER_MOTION;

CPoint rootPosition(std::int16_t x, std::int16_t y) {
    return {static_cast<double>(x), static_cast<double>(y)};
}

} // namespace

// ---- One window --------------------------------------------------------------------------------

X11MenuWindow::X11MenuWindow(std::shared_ptr<X11Connection> connection,
                             const MenuColumn& column,
                             const X11PixelFormat& format,
                             bool withShadow,
                             xcb_cursor_t cursor)
    : connection_(std::move(connection))
    , column_(column)
    , picture_(column, withShadow) {
    xcb_connection_t* xcb = connection_->xcb();
    const xcb_window_t root = connection_->screen().root;
    const CPoint at = column.rect().topLeft() - picture_.panelOrigin();
    colormap_ = xcb_generate_id(xcb);
    xcb_create_colormap(xcb, XCB_COLORMAP_ALLOC_NONE, colormap_, root, format.visual);
    window_ = xcb_generate_id(xcb);
    const std::uint32_t values[] = {XCB_BACK_PIXMAP_NONE, 0, 1, 1, kMenuEvents, colormap_, cursor};
    xcb_create_window(xcb, format.depth, window_, root, static_cast<std::int16_t>(at.x),
                      static_cast<std::int16_t>(at.y),
                      static_cast<std::uint16_t>(picture_.bitmap().width),
                      static_cast<std::uint16_t>(picture_.bitmap().height), 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, format.visual,
                      XCB_CW_BACK_PIXMAP | XCB_CW_BORDER_PIXEL | XCB_CW_OVERRIDE_REDIRECT |
                          XCB_CW_SAVE_UNDER | XCB_CW_EVENT_MASK | XCB_CW_COLORMAP | XCB_CW_CURSOR,
                      values);
    const xcb_atom_t kind = connection_->atom(X11Atom::kNetWmWindowTypePopupMenu);
    connection_->setProperty(window_, connection_->atom(X11Atom::kNetWmWindowType), XCB_ATOM_ATOM,
                             32, &kind, 1);
    if (!withShadow) cutCorners();
    target_ = {connection_.get(), window_, xcb_generate_id(xcb), format};
    xcb_create_gc(xcb, target_.gc, window_, 0, nullptr);
    xcb_map_window(xcb, window_);
    show(true);
}

X11MenuWindow::~X11MenuWindow() {
    xcb_free_gc(connection_->xcb(), target_.gc);
    xcb_destroy_window(connection_->xcb(), window_);
    xcb_free_colormap(connection_->xcb(), colormap_);
}

/// Where nothing blends windows, the rounded corners are cut out of the window's shape.
void X11MenuWindow::cutCorners() const {
    if (!connection_->hasShape()) return;
    // Pixels left out at each end of the first rows, for a radius of 4.
    constexpr std::array<int, 2> kInsets{2, 1};
    const int width = static_cast<int>(column_.rect().width());
    const int height = static_cast<int>(column_.rect().height());
    std::vector<xcb_rectangle_t> rows;
    const auto add = [&rows, width](int y, int rowHeight, int inset) {
        rows.push_back({static_cast<std::int16_t>(inset), static_cast<std::int16_t>(y),
                        static_cast<std::uint16_t>(width - 2 * inset),
                        static_cast<std::uint16_t>(rowHeight)});
    };
    for (int i = 0; i < static_cast<int>(kInsets.size()); ++i) {
        add(i, 1, kInsets[static_cast<std::size_t>(i)]);
        add(height - 1 - i, 1, kInsets[static_cast<std::size_t>(i)]);
    }
    add(static_cast<int>(kInsets.size()), height - 2 * static_cast<int>(kInsets.size()), 0);
    xcb_shape_rectangles(connection_->xcb(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING,
                         XCB_CLIP_ORDERING_UNSORTED, window_, 0, 0,
                         static_cast<std::uint32_t>(rows.size()), rows.data());
}

void X11MenuWindow::show(bool exposed) {
    if (!picture_.update() && !exposed) return;
    IOSBitmap& bitmap = picture_.bitmap();
    putPixels(target_, bitmap, {0, 0, bitmap.width, bitmap.height}, 0, 0);
}

// ---- The menu ----------------------------------------------------------------------------------

X11MenuPopup::X11MenuPopup(std::shared_ptr<X11Connection> connection,
                           const MenuRequest& request,
                           const Place& place,
                           IOSOptionMenu::Answer answer)
    : connection_(std::move(connection))
    , cursor_(place.cursor)
    , openedAt_(place.setting.now) {
    if (connection_->isComposited()) format_ = formatWithAlpha(*connection_);
    withShadow_ = static_cast<bool>(format_);
    if (!withShadow_) format_ = formatForWindow(*connection_, XCB_NONE);
    menu_.stack.emplace(request, place.setting, menuTextWidth());
    menu_.answer = std::move(answer);
    syncWindows();
    grab(place.setting.now);
}

X11MenuPopup::~X11MenuPopup() { closeWindows(); }

void X11MenuPopup::grab(std::uint64_t now) {
    if (windows_.empty() || (pointerGrabbed_ && keyboardGrabbed_) ||
        now - openedAt_ > kGrabPatienceMilliseconds)
        return;
    xcb_connection_t* xcb = connection_->xcb();
    const xcb_window_t window = windows_.front()->id();
    // Events of our own windows keep going to them, all others come to the menu.
    const auto pointer = xcb_grab_pointer(xcb, 1, window, kPointerEvents, XCB_GRAB_MODE_ASYNC,
                                          XCB_GRAB_MODE_ASYNC, XCB_NONE, cursor_, XCB_CURRENT_TIME);
    const auto keyboard = xcb_grab_keyboard(xcb, 1, window, XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC,
                                            XCB_GRAB_MODE_ASYNC);
    const auto pointerReply = connection_->reply(xcb_grab_pointer_reply, pointer);
    const auto keyboardReply = connection_->reply(xcb_grab_keyboard_reply, keyboard);
    pointerGrabbed_ = pointerReply && pointerReply->status == XCB_GRAB_STATUS_SUCCESS;
    keyboardGrabbed_ = keyboardReply && keyboardReply->status == XCB_GRAB_STATUS_SUCCESS;
}

void X11MenuPopup::closeWindows() {
    if (windows_.empty()) return;
    xcb_ungrab_pointer(connection_->xcb(), XCB_CURRENT_TIME);
    xcb_ungrab_keyboard(connection_->xcb(), XCB_CURRENT_TIME);
    windows_.clear();
    connection_->flush();
}

void X11MenuPopup::cancel() {
    menu_.cancel();
    closeWindows();
}

void X11MenuPopup::dismiss() {
    if (isShown()) menu_.stack->dismiss();
}

/// A window for each column: those of columns that went are closed, new ones opened.
void X11MenuPopup::syncWindows() {
    const MenuStack& stack = *menu_.stack;
    if (stack.isFinished()) return closeWindows();
    std::size_t same = 0;
    const auto columns = static_cast<std::size_t>(stack.columnCount());
    while (same < windows_.size() && same < columns &&
           windows_[same]->column() == &stack.column(static_cast<int>(same)))
        ++same;
    windows_.resize(same);
    for (std::size_t i = same; i < columns; ++i)
        windows_.push_back(std::make_unique<X11MenuWindow>(
            connection_, stack.column(static_cast<int>(i)), format_, withShadow_, cursor_));
}

void X11MenuPopup::update(std::uint64_t now) {
    if (!isOpen()) return;
    grab(now);
    menu_.stack->onIdle(now);
    syncWindows();
    for (const auto& window : windows_)
        window->show(false);
}

X11MenuWindow* X11MenuPopup::windowOf(xcb_window_t id) const {
    for (const auto& window : windows_)
        if (window->id() == id) return window.get();
    return nullptr;
}

bool X11MenuPopup::onButton(const xcb_button_press_event_t& event, bool down, std::uint64_t now) {
    const CPoint where = rootPosition(event.root_x, event.root_y);
    const bool wheel = event.detail == 4 || event.detail == 5;
    if (wheel && down) menu_.stack->onWheel(where, event.detail == 4 ? 1.0 : -1.0, now);
    if (event.detail >= 4 && event.detail <= 7) return true;
    if (down)
        menu_.stack->onMouseDown(where, now);
    else
        menu_.stack->onMouseUp(where, now);
    syncWindows();
    return true;
}

bool X11MenuPopup::onEvent(const xcb_generic_event_t& event,
                           X11Keyboard& keyboard,
                           std::uint64_t now) {
    if (!isShown()) return false;
    switch (event.response_type & 0x7F) {
    case XCB_EXPOSE:
        if (X11MenuWindow* window =
                windowOf(reinterpret_cast<const xcb_expose_event_t&>(event).window)) {
            window->show(true);
            return true;
        }
        return false;
    case XCB_MOTION_NOTIFY: {
        const auto& motion = reinterpret_cast<const xcb_motion_notify_event_t&>(event);
        menu_.stack->onMouseMoved(rootPosition(motion.root_x, motion.root_y), now);
        return true;
    }
    case XCB_ENTER_NOTIFY: {
        const auto& enter = reinterpret_cast<const xcb_enter_notify_event_t&>(event);
        if (windowOf(enter.event) == nullptr) return false;
        menu_.stack->onMouseMoved(rootPosition(enter.root_x, enter.root_y), now);
        return true;
    }
    case XCB_BUTTON_PRESS:
    case XCB_BUTTON_RELEASE:
        return onButton(reinterpret_cast<const xcb_button_press_event_t&>(event),
                        (event.response_type & 0x7F) == XCB_BUTTON_PRESS, now);
    case XCB_KEY_PRESS:
        for (const KeyEvent& key :
             keyboard.press(reinterpret_cast<const xcb_key_press_event_t&>(event).detail))
            menu_.stack->onKey(key, now);
        syncWindows();
        return true;
    case XCB_KEY_RELEASE:
        return true;
    default:
        return false;
    }
}

// ---- For controls ------------------------------------------------------------------------------

bool COptionMenu_X11::popup(const MenuRequest& request, Answer answer) {
    if (isOpen() || link_->frame == nullptr || request.items.empty() || !answer) return false;
    popup_ = link_->frame->openMenu(request, std::move(answer));
    return popup_ != nullptr;
}

void COptionMenu_X11::cancel() {
    if (popup_) popup_->cancel();
}

} // namespace Sorel
