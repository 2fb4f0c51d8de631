// A window of its own: how it presents itself to the desktop's window manager.
#include "x11/FrameX11.h"

#include "draw/DrawContext.h"

#include <unistd.h>

namespace Sorel {

namespace {

constexpr int kIconSide = 48;

/// The instrument's sign, an open ring with three strokes, as the desktop wants icons: width,
/// height, then straight ARGB words.
std::vector<std::uint32_t> iconPixels() {
    CMemoryBitmap bitmap;
    CRenderer renderer;
    if (!bitmap.create(kIconSide, kIconSide)) return {};
    renderer.attach(bitmap);
    renderer.noLine();
    renderer.fillColor({34, 37, 59, 255});
    renderer.roundedRect({0.0, 0.0, kIconSide, kIconSide}, 10.0);
    renderer.noFill();
    // In the sign's own units, 8 to the ring's radius, around the icon's middle.
    constexpr double kUnit = 2.1;
    const auto at = [](double units) { return kIconSide * 0.5 + units * kUnit; };
    std::vector<CPoint> ring;
    for (int degrees = -135; degrees <= 135; degrees += 5) {
        const double angle = degrees * 3.14159265358979 / 180.0;
        ring.push_back({at(8.0 * std::sin(angle)), at(-8.0 * std::cos(angle))});
    }
    renderer.lineColor({161, 163, 193, 255});
    renderer.lineWidth(1.6 * kUnit);
    renderer.polyline(ring);
    renderer.lineColor({250, 200, 60, 255});
    renderer.lineWidth(1.5 * kUnit);
    constexpr double kHalfLengths[] = {2.2, 4.6, 2.8};
    for (int i = 0; i < 3; ++i) {
        const CPoint stroke[] = {{at(3.0 * (i - 1)), at(-kHalfLengths[i])},
                                 {at(3.0 * (i - 1)), at(kHalfLengths[i])}};
        renderer.polyline(stroke);
    }
    std::vector<std::uint32_t> words{kIconSide, kIconSide};
    for (int i = 0; i < kIconSide * kIconSide; ++i) {
        const std::uint8_t* pixel = bitmap.getPixels() + i * 4;
        const std::uint32_t alpha = pixel[3];
        const auto straight = [alpha](std::uint32_t value) {
            return alpha == 0 ? 0U : std::min(255U, value * 255U / alpha);
        };
        words.push_back(alpha << 24 | straight(pixel[2]) << 16 | straight(pixel[1]) << 8 |
                        straight(pixel[0]));
    }
    return words;
}

} // namespace

void CFrameX11::describeOwnWindow(const std::string& title) {
    const auto set = [this](xcb_atom_t property, xcb_atom_t type, int bits, const void* data,
                            std::size_t count) {
        connection_->setProperty(window_, property, type, bits, data, count);
    };
    const auto atom = [this](X11Atom name) { return connection_->atom(name); };
    set(XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8, title.data(), title.size());
    set(atom(X11Atom::kNetWmName), atom(X11Atom::kUtf8String), 8, title.data(), title.size());
    const std::string names = "orvelscope" + std::string(1, '\0') + "OrvelScope" + '\0';
    set(XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8, names.data(), names.size());
    const std::array<xcb_atom_t, 2> protocols{atom(X11Atom::kWmDeleteWindow),
                                              atom(X11Atom::kNetWmPing)};
    set(atom(X11Atom::kWmProtocols), XCB_ATOM_ATOM, 32, protocols.data(), protocols.size());
    const xcb_atom_t kind = atom(X11Atom::kNetWmWindowTypeNormal);
    set(atom(X11Atom::kNetWmWindowType), XCB_ATOM_ATOM, 32, &kind, 1);
    const auto pid = static_cast<std::uint32_t>(getpid());
    set(atom(X11Atom::kNetWmPid), XCB_ATOM_CARDINAL, 32, &pid, 1);
    const std::vector<std::uint32_t> icon = iconPixels();
    set(atom(X11Atom::kNetWmIcon), XCB_ATOM_CARDINAL, 32, icon.data(), icon.size());
    fixSize();
}

/// Tells the window manager that the size is not for the user to change.
void CFrameX11::fixSize() const {
    constexpr std::uint32_t kMinSize = 1U << 4;
    constexpr std::uint32_t kMaxSize = 1U << 5;
    std::array<std::uint32_t, 18> hints{};
    hints[0] = kMinSize | kMaxSize;
    hints[5] = hints[7] = static_cast<std::uint32_t>(size_.width());
    hints[6] = hints[8] = static_cast<std::uint32_t>(size_.height());
    connection_->setProperty(window_, XCB_ATOM_WM_NORMAL_HINTS, XCB_ATOM_WM_SIZE_HINTS, 32,
                             hints.data(), hints.size());
}

/// The desktop's name for the window that ours is in: the one that a window manager looks after,
/// else the outermost.
xcb_window_t CFrameX11::topLevelWindow() const {
    constexpr int kDeepest = 64;
    xcb_window_t managed = XCB_NONE;
    xcb_window_t window = window_;
    for (int i = 0; i < kDeepest && window != XCB_NONE; ++i) {
        const xcb_atom_t state = connection_->atom(X11Atom::kWmState);
        const auto hasState = connection_->reply(
            xcb_get_property_reply, xcb_get_property(connection_->xcb(), 0, window, state,
                                                     XCB_GET_PROPERTY_TYPE_ANY, 0, 0));
        if (hasState && hasState->type != XCB_NONE) managed = window;
        const auto tree =
            connection_->reply(xcb_query_tree_reply, xcb_query_tree(connection_->xcb(), window));
        if (!tree || tree->parent == tree->root || tree->parent == XCB_NONE) break;
        window = tree->parent;
    }
    return managed != XCB_NONE ? managed : window;
}

void CFrameX11::onClientMessage(const xcb_client_message_event_t& message) {
    if (message.type != connection_->atom(X11Atom::kWmProtocols) || message.format != 32) return;
    const xcb_atom_t what = message.data.data32[0];
    if (what == connection_->atom(X11Atom::kWmDeleteWindow)) {
        events_->platformCloseRequested();
    } else if (what == connection_->atom(X11Atom::kNetWmPing)) {
        xcb_client_message_event_t answer = message;
        const xcb_window_t root = connection_->screen().root;
        answer.window = root;
        xcb_send_event(connection_->xcb(), 0, root,
                       XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                       reinterpret_cast<const char*>(&answer));
    }
}

void CFrameX11::onConfigure(const xcb_configure_notify_event_t& event) {
    if (event.window != window_ || !isOwnWindow()) return;
    const CRect size{0.0, 0.0, static_cast<double>(event.width), static_cast<double>(event.height)};
    if (size == size_) return;
    size_ = size;
    events_->platformResized(size.width(), size.height());
}

} // namespace Sorel
