// A frame's window on an X11 desktop: its life, and what the frame may ask of it.
#include "x11/FrameX11.h"

#include <unistd.h>
#include <xcb/randr.h>

#include <algorithm>
#include <bit>
#include <utility>

namespace Sorel {

namespace {

constexpr std::uint32_t kWindowEvents =
    XCB_EVENT_MASK_EXPOSURE | XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_BUTTON_PRESS |
    XCB_EVENT_MASK_BUTTON_RELEASE | XCB_EVENT_MASK_POINTER_MOTION | XCB_EVENT_MASK_ENTER_WINDOW |
    XCB_EVENT_MASK_LEAVE_WINDOW | XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE |
    XCB_EVENT_MASK_FOCUS_CHANGE | XCB_EVENT_MASK_PROPERTY_CHANGE;

std::uint16_t extent(double value) {
    return static_cast<std::uint16_t>(std::clamp(value, 1.0, 32767.0));
}

} // namespace

CFrameX11::CFrameX11(IFrameEvents& events,
                     const CRect& size,
                     xcb_window_t parent,
                     const std::string& title)
    : connection_(X11Connection::open())
    , events_(&events)
    , parent_(parent)
    , size_{0.0, 0.0, std::trunc(size.width()), std::trunc(size.height())} {
    if (connection_) createWindow(title);
    if (window_ == XCB_NONE) {
        connection_ = nullptr;
        return;
    }
    keyboard_.emplace(*connection_);
    cursors_.emplace(*connection_);
    clipboard_.emplace(*connection_, window_);
    drops_.emplace(*connection_, window_, events);
    textLink_->frame = this;
    link_->frame = this;
    connection_->flush();
}

CFrameX11::~CFrameX11() { CFrameX11::destroyWindow(); }

void CFrameX11::createWindow(const std::string& title) {
    xcb_connection_t* xcb = connection_->xcb();
    const X11PixelFormat format = formatForWindow(*connection_, parent_);
    if (!format) return;
    const xcb_window_t parent = isOwnWindow() ? connection_->screen().root : parent_;
    const xcb_colormap_t colormap = xcb_generate_id(xcb);
    xcb_create_colormap(xcb, XCB_COLORMAP_ALLOC_NONE, colormap, connection_->screen().root,
                        format.visual);
    // No background: the server must not paint between two of our pictures.
    const std::uint32_t values[] = {XCB_BACK_PIXMAP_NONE, 0, XCB_GRAVITY_STATIC, kWindowEvents,
                                    colormap};
    window_ = xcb_generate_id(xcb);
    const auto created = xcb_create_window_checked(
        xcb, format.depth, window_, parent, 0, 0, extent(size_.width()), extent(size_.height()), 0,
        XCB_WINDOW_CLASS_INPUT_OUTPUT, format.visual,
        XCB_CW_BACK_PIXMAP | XCB_CW_BORDER_PIXEL | XCB_CW_BIT_GRAVITY | XCB_CW_EVENT_MASK |
            XCB_CW_COLORMAP,
        values);
    const XcbOwned<xcb_generic_error_t> error(xcb_request_check(xcb, created));
    if (error || connection_->isBroken()) {
        window_ = XCB_NONE;
        return;
    }
    target_ = {connection_.get(), window_, xcb_generate_id(xcb), format};
    const std::uint32_t noExposures = 0;
    xcb_create_gc(xcb, target_.gc, window_, XCB_GC_GRAPHICS_EXPOSURES, &noExposures);
    presenter_.setTarget(target_);
    // Hosts that speak XEmbed look for this before they show a child.
    constexpr std::uint32_t kXEmbed[] = {0, 1}; // version, mapped
    const xcb_atom_t xembed = connection_->atom(X11Atom::kXEmbedInfo);
    connection_->setProperty(window_, xembed, xembed, 32, kXEmbed, 2);
    if (isOwnWindow()) describeOwnWindow(title);
    xcb_map_window(xcb, window_);
}

void CFrameX11::destroyWindow() {
    const xcb_window_t window = window_;
    windowIsGone();
    if (window != XCB_NONE) {
        xcb_destroy_window(connection_->xcb(), window);
        connection_->flush();
    }
    // The helpers may be at work further up the stack; then the end of the idle lets go of them.
    if (inIdle_) return;
    drops_.reset();
    clipboard_.reset();
    cursors_.reset();
    keyboard_.reset();
    // Closes the connection, unless pictures made for this window live on.
    connection_ = nullptr;
}

/// By our own will, by the host's, or with the display: nothing more is said to anyone.
void CFrameX11::windowIsGone() {
    window_ = XCB_NONE;
    events_ = nullptr;
    textLink_->frame = nullptr;
    link_->frame = nullptr;
    focused_ = false;
    motion_.reset();
    if (drops_) drops_->detach();
    cancelPopups();
}

void CFrameX11::cancelPopups() {
    if (const auto menu = menu_.lock()) menu->cancel();
    for (const auto& watched : std::exchange(dialogs_, {}))
        if (const auto dialog = watched.lock()) dialog->cancel();
}

void* CFrameX11::getPlatformHandle() {
    return std::bit_cast<void*>(static_cast<std::uintptr_t>(window_));
}

int CFrameX11::eventDescriptor() {
    return window_ != XCB_NONE ? xcb_get_file_descriptor(connection_->xcb()) : -1;
}

std::unique_ptr<IOSBitmap> CFrameX11::createSurface() {
    if (window_ == XCB_NONE) return std::make_unique<CMemoryBitmap>();
    return std::make_unique<CX11Bitmap>(connection_);
}

// ---- Place -------------------------------------------------------------------------------------

CPoint CFrameX11::originOnScreen() const {
    if (window_ == XCB_NONE) return {};
    const auto there = connection_->reply(
        xcb_translate_coordinates_reply,
        xcb_translate_coordinates(connection_->xcb(), window_, connection_->screen().root, 0, 0));
    return there ? CPoint{static_cast<double>(there->dst_x), static_cast<double>(there->dst_y)}
                 : CPoint{};
}

bool CFrameX11::getPosition(double* x, double* y) {
    if (window_ == XCB_NONE) return false;
    const CPoint origin = originOnScreen();
    *x = origin.x;
    *y = origin.y;
    return true;
}

bool CFrameX11::getSize(CRect* rect) {
    if (window_ == XCB_NONE) return false;
    *rect = size_;
    return true;
}

bool CFrameX11::setSize(double width, double height) {
    if (window_ == XCB_NONE) return false;
    size_ = {0.0, 0.0, std::trunc(width), std::trunc(height)};
    const std::uint32_t values[] = {extent(width), extent(height)};
    if (isOwnWindow()) fixSize();
    xcb_configure_window(connection_->xcb(), window_,
                         XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, values);
    connection_->flush();
    return true;
}

/// The usable part of the screen at a point: the monitor there, else all of it.
CRect CFrameX11::workAreaAt(CPoint onScreen) const {
    const xcb_screen_t& screen = connection_->screen();
    const CRect all{0.0, 0.0, static_cast<double>(screen.width_in_pixels),
                    static_cast<double>(screen.height_in_pixels)};
    if (!connection_->hasRandr()) return all;
    const auto monitors = connection_->reply(
        xcb_randr_get_monitors_reply, xcb_randr_get_monitors(connection_->xcb(), screen.root, 1));
    if (!monitors) return all;
    xcb_randr_monitor_info_iterator_t it = xcb_randr_get_monitors_monitors_iterator(monitors.get());
    for (; it.rem > 0; xcb_randr_monitor_info_next(&it)) {
        const CRect monitor =
            CRect::ofSize(it.data->x, it.data->y, it.data->width, it.data->height);
        if (monitor.contains(onScreen)) return monitor;
    }
    return all;
}

// ---- Mouse -------------------------------------------------------------------------------------

bool CFrameX11::getCurrentMouseLocation(CPoint* where) {
    if (window_ == XCB_NONE) return false;
    const auto pointer =
        connection_->reply(xcb_query_pointer_reply, xcb_query_pointer(connection_->xcb(), window_));
    if (!pointer) return false;
    *where = {static_cast<double>(pointer->win_x), static_cast<double>(pointer->win_y)};
    return true;
}

void CFrameX11::setMouseCursor(CursorKind kind) {
    if (window_ == XCB_NONE || kind == cursor_) return;
    cursor_ = kind;
    const std::uint32_t cursor = cursors_->get(kind);
    xcb_change_window_attributes(connection_->xcb(), window_, XCB_CW_CURSOR, &cursor);
    connection_->flush();
}

void CFrameX11::setDropAccepted(bool accepted) {
    if (drops_) drops_->setAccepted(accepted);
}

CDragContainer* CFrameX11::getDragContainer() { return drops_ ? drops_->container() : nullptr; }

// ---- Keyboard and clipboard --------------------------------------------------------------------

void CFrameX11::setKeyboardFocus(bool wanted) {
    if (window_ == XCB_NONE || wanted == focused_) return;
    xcb_connection_t* xcb = connection_->xcb();
    if (wanted) {
        const auto now = connection_->reply(xcb_get_input_focus_reply, xcb_get_input_focus(xcb));
        focusBefore_ = now && now->focus != window_ ? now->focus : XCB_NONE;
        xcb_set_input_focus(xcb, XCB_INPUT_FOCUS_PARENT, window_, XCB_CURRENT_TIME);
        focused_ = true;
    } else if (!isOwnWindow()) {
        // Errors do no harm: whoever had it may be gone.
        const xcb_window_t back = focusBefore_ != XCB_NONE ? focusBefore_ : parent_;
        xcb_set_input_focus(xcb, XCB_INPUT_FOCUS_PARENT, back, XCB_CURRENT_TIME);
        focused_ = false;
    }
    connection_->flush();
}

void CFrameX11::setClipboardText(const std::string& utf8) {
    if (window_ != XCB_NONE) clipboard_->setText(utf8, lastTime_);
}

void CFrameX11::requestClipboardText(std::function<void(const std::string&)> answer) {
    if (window_ != XCB_NONE) clipboard_->requestText(lastTime_, x11Ticks(), std::move(answer));
}

// ---- Text boxes, menus, dialogs ----------------------------------------------------------------

std::unique_ptr<IOSTextEdit> CFrameX11::createTextEdit(ITextEditCallback& callback, const CRect&) {
    return std::make_unique<Sorel_TextEditX11>(callback, textLink_);
}

std::unique_ptr<IOSOptionMenu> CFrameX11::createOptionMenu() {
    return std::make_unique<COptionMenu_X11>(link_);
}

std::unique_ptr<IOSFileDialog> CFrameX11::createFileDialog() {
    return std::make_unique<X11FileDialog>(link_);
}

std::shared_ptr<X11MenuPopup> CFrameX11::shownMenu() const {
    std::shared_ptr<X11MenuPopup> menu = menu_.lock();
    return menu && menu->isOpen() ? menu : nullptr;
}

std::shared_ptr<X11MenuPopup> CFrameX11::openMenu(const MenuRequest& request,
                                                  IOSOptionMenu::Answer answer) {
    if (window_ == XCB_NONE || connection_->isBroken() || shownMenu()) return nullptr;
    const CPoint origin = originOnScreen();
    X11MenuPopup::Place place;
    place.setting.anchor = request.anchor.moved(origin);
    place.setting.workArea = workAreaAt(place.setting.anchor.centre());
    place.setting.mouse = mouse_ + origin;
    place.setting.pressed = pressed_ != 0;
    place.setting.now = x11Ticks();
    place.cursor = cursors_->get(CursorKind::kArrow);
    auto menu = std::make_shared<X11MenuPopup>(connection_, request, place, std::move(answer));
    connection_->flush();
    menu_ = menu;
    return menu;
}

void CFrameX11::answerPopups() {
    if (const auto menu = menu_.lock()) {
        menu->update(x11Ticks());
        menu->deliver();
    }
    // Answers may open further dialogs, or close the window.
    const std::vector<std::weak_ptr<X11DialogSession>> watched = dialogs_;
    for (const auto& entry : watched)
        if (const auto dialog = entry.lock()) dialog->poll();
    std::erase_if(dialogs_, [](const std::weak_ptr<X11DialogSession>& entry) {
        const auto dialog = entry.lock();
        return !dialog || !dialog->isOpen();
    });
}

// ---- Idle --------------------------------------------------------------------------------------

void CFrameX11::doIdle() {
    if (window_ == XCB_NONE || inIdle_) return;
    const Counted<CFrameX11> hold(this);
    inIdle_ = true;
    handleEvents();
    if (events_ != nullptr) {
        clipboard_->onIdle(x11Ticks());
        drops_->onIdle(x11Ticks());
    }
    if (events_ != nullptr) answerPopups();
    if (events_ != nullptr) events_->platformIdle();
    if (events_ != nullptr) presenter_.show(events_->platformSurface(), x11Ticks());
    if (connection_) connection_->flush();
    inIdle_ = false;
    if (window_ == XCB_NONE) destroyWindow(); // it went meanwhile
}

} // namespace Sorel
