// A connection to the display.
#include "x11/X11Connection.h"

#include <xcb/randr.h>
#include <xcb/shape.h>
#include <xcb/shm.h>

#include <string>

namespace Sorel {

namespace {

constexpr std::array<const char*, static_cast<std::size_t>(X11Atom::kCount)> kAtomNames{
    "CLIPBOARD",
    "TARGETS",
    "TIMESTAMP",
    "UTF8_STRING",
    "TEXT",
    "text/plain",
    "text/plain;charset=utf-8",
    "INCR",
    "ORVEL_CLIPBOARD",
    "ORVEL_DROP",
    "text/uri-list",
    "XdndAware",
    "XdndEnter",
    "XdndPosition",
    "XdndStatus",
    "XdndLeave",
    "XdndDrop",
    "XdndFinished",
    "XdndSelection",
    "XdndTypeList",
    "XdndActionCopy",
    "_XEMBED_INFO",
    "WM_PROTOCOLS",
    "WM_DELETE_WINDOW",
    "WM_STATE",
    "_NET_WM_PING",
    "_NET_WM_NAME",
    "_NET_WM_ICON",
    "_NET_WM_PID",
    "_NET_WM_WINDOW_TYPE",
    "_NET_WM_WINDOW_TYPE_NORMAL",
    "_NET_WM_WINDOW_TYPE_POPUP_MENU",
    "_NET_WM_CM_S",
};

bool isPresent(xcb_connection_t* xcb, xcb_extension_t* extension) {
    const xcb_query_extension_reply_t* data = xcb_get_extension_data(xcb, extension);
    return data != nullptr && data->present != 0;
}

xcb_screen_t* screenOf(xcb_connection_t* xcb, int number) {
    xcb_screen_iterator_t it = xcb_setup_roots_iterator(xcb_get_setup(xcb));
    for (; it.rem > 1 && number > 0; --number)
        xcb_screen_next(&it);
    return it.data;
}

bool isRgb(const xcb_visualtype_t& visual) {
    return visual._class == XCB_VISUAL_CLASS_TRUE_COLOR && visual.red_mask == 0xFF0000 &&
           visual.green_mask == 0xFF00 && visual.blue_mask == 0xFF;
}

bool has32BitsAPixel(const xcb_setup_t& setup, std::uint8_t depth) {
    xcb_format_iterator_t it = xcb_setup_pixmap_formats_iterator(&setup);
    for (; it.rem > 0; xcb_format_next(&it))
        if (it.data->depth == depth) return it.data->bits_per_pixel == 32;
    return false;
}

/// The first visual that `accepts` likes.
template <class Predicate>
X11PixelFormat findFormat(const X11Connection& connection, Predicate accepts) {
    const xcb_setup_t& setup = *xcb_get_setup(connection.xcb());
    const bool swapped = setup.image_byte_order != XCB_IMAGE_ORDER_LSB_FIRST;
    xcb_depth_iterator_t depths = xcb_screen_allowed_depths_iterator(&connection.screen());
    for (; depths.rem > 0; xcb_depth_next(&depths)) {
        const std::uint8_t depth = depths.data->depth;
        if ((depth != 24 && depth != 32) || !has32BitsAPixel(setup, depth)) continue;
        xcb_visualtype_iterator_t visuals = xcb_depth_visuals_iterator(depths.data);
        for (; visuals.rem > 0; xcb_visualtype_next(&visuals))
            if (isRgb(*visuals.data) && accepts(depth, visuals.data->visual_id))
                return {depth, visuals.data->visual_id, swapped};
    }
    return {};
}

} // namespace

std::shared_ptr<X11Connection> X11Connection::open() {
    int number = 0;
    xcb_connection_t* xcb = xcb_connect(nullptr, &number);
    xcb_screen_t* screen = xcb_connection_has_error(xcb) != 0 ? nullptr : screenOf(xcb, number);
    if (screen == nullptr) {
        xcb_disconnect(xcb);
        return nullptr;
    }
    std::shared_ptr<X11Connection> connection(new X11Connection(xcb, screen));
    connection->internAtoms(number);
    connection->queryExtensions();
    return connection->isBroken() ? nullptr : connection;
}

X11Connection::X11Connection(xcb_connection_t* xcb, xcb_screen_t* screen)
    : xcb_(xcb)
    , screen_(screen) {}

X11Connection::~X11Connection() { xcb_disconnect(xcb_); }

void X11Connection::internAtoms(int screenNumber) {
    // All questions first, then all answers: one trip to the server.
    std::array<xcb_intern_atom_cookie_t, kAtomNames.size()> cookies{};
    for (std::size_t i = 0; i < kAtomNames.size(); ++i) {
        std::string name = kAtomNames[i];
        if (i == static_cast<std::size_t>(X11Atom::kCompositor))
            name += std::to_string(screenNumber);
        cookies[i] =
            xcb_intern_atom(xcb_, 0, static_cast<std::uint16_t>(name.size()), name.c_str());
    }
    for (std::size_t i = 0; i < kAtomNames.size(); ++i)
        if (const auto answer = reply(xcb_intern_atom_reply, cookies[i])) atoms_[i] = answer->atom;
}

void X11Connection::queryExtensions() {
    xcb_prefetch_extension_data(xcb_, &xcb_shm_id);
    xcb_prefetch_extension_data(xcb_, &xcb_shape_id);
    xcb_prefetch_extension_data(xcb_, &xcb_randr_id);
    // For measuring and for displays where shared memory misbehaves.
    // NOLINTNEXTLINE(concurrency-mt-unsafe): nobody changes the environment of a running host
    const bool wantsShm = std::getenv("ORVEL_NO_SHM") == nullptr;
    if (wantsShm && isPresent(xcb_, &xcb_shm_id))
        shmCompletionEvent_ = static_cast<std::uint8_t>(
            xcb_get_extension_data(xcb_, &xcb_shm_id)->first_event + XCB_SHM_COMPLETION);
    hasShape_ = isPresent(xcb_, &xcb_shape_id);
    if (isPresent(xcb_, &xcb_randr_id)) {
        const auto version =
            reply(xcb_randr_query_version_reply, xcb_randr_query_version(xcb_, 1, 5));
        hasRandr_ = version && (version->major_version > 1 || version->minor_version >= 5);
    }
}

bool X11Connection::isComposited() const {
    const auto owner = reply(xcb_get_selection_owner_reply,
                             xcb_get_selection_owner(xcb_, atom(X11Atom::kCompositor)));
    return owner && owner->owner != XCB_NONE;
}

X11PixelFormat formatForWindow(const X11Connection& connection, xcb_window_t parent) {
    // The parent's own format spares the compositor work; else any that fits.
    xcb_visualid_t wanted = connection.screen().root_visual;
    if (parent != XCB_NONE && parent != connection.screen().root) {
        const auto attributes = connection.reply(
            xcb_get_window_attributes_reply, xcb_get_window_attributes(connection.xcb(), parent));
        if (attributes) wanted = attributes->visual;
    }
    const auto same = [wanted](std::uint8_t, xcb_visualid_t visual) { return visual == wanted; };
    if (const X11PixelFormat format = findFormat(connection, same)) return format;
    return findFormat(connection, [](std::uint8_t depth, xcb_visualid_t) { return depth == 24; });
}

X11PixelFormat formatWithAlpha(const X11Connection& connection) {
    return findFormat(connection, [](std::uint8_t depth, xcb_visualid_t) { return depth == 32; });
}

} // namespace Sorel
