// A connection to the display: what the server can do, and the names (atoms) we speak with.
#pragma once

#include <xcb/xcb.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>

namespace Sorel {

/// Owns what xcb allocates with malloc: replies, events, errors.
struct XcbFree {
    void operator()(void* memory) const { std::free(memory); }
};
template <class T>
using XcbOwned = std::unique_ptr<T, XcbFree>;

/// The atoms in use; X11Connection.cpp has their names in the same order.
enum class X11Atom : std::uint8_t {
    kClipboard,
    kTargets,
    kTimestamp,
    kUtf8String,
    kText,
    kPlainText,
    kPlainTextUtf8,
    kIncr,
    kClipboardProperty,
    kDropProperty,
    kUriList,
    kXdndAware,
    kXdndEnter,
    kXdndPosition,
    kXdndStatus,
    kXdndLeave,
    kXdndDrop,
    kXdndFinished,
    kXdndSelection,
    kXdndTypeList,
    kXdndActionCopy,
    kXEmbedInfo,
    kWmProtocols,
    kWmDeleteWindow,
    kWmState,
    kNetWmPing,
    kNetWmName,
    kNetWmIcon,
    kNetWmPid,
    kNetWmWindowType,
    kNetWmWindowTypeNormal,
    kNetWmWindowTypePopupMenu,
    kCompositor, // of the screen: _NET_WM_CM_Sn
    kCount,
};

/// Shared by a window and the pictures made for it; the last one closes it. Errors of the server
/// and the loss of the connection end nothing: requests are then without effect.
class X11Connection {
  public:
    /// Null when there is no display.
    static std::shared_ptr<X11Connection> open();
    ~X11Connection();
    X11Connection(const X11Connection&) = delete;
    X11Connection& operator=(const X11Connection&) = delete;

    xcb_connection_t* xcb() const { return xcb_; }
    xcb_screen_t& screen() const { return *screen_; }
    xcb_atom_t atom(X11Atom name) const { return atoms_[static_cast<std::size_t>(name)]; }
    bool isBroken() const { return xcb_connection_has_error(xcb_) != 0; }

    /// Event number of a finished shared-memory put; 0 where there is no shared memory.
    std::uint8_t shmCompletionEvent() const { return shmCompletionEvent_; }
    bool hasShape() const { return hasShape_; }
    bool hasRandr() const { return hasRandr_; }
    /// Something blends windows with an alpha channel onto the screen.
    bool isComposited() const;

    void flush() const { xcb_flush(xcb_); }
    /// Waits for the answer; null for an error.
    template <class Cookie, class ReplyFunction>
    auto reply(ReplyFunction function, Cookie cookie) const {
        using T = std::remove_pointer_t<decltype(function(xcb_, cookie, nullptr))>;
        xcb_generic_error_t* error = nullptr;
        XcbOwned<T> result(function(xcb_, cookie, &error));
        std::free(error);
        return result;
    }
    void setProperty(xcb_window_t window,
                     xcb_atom_t property,
                     xcb_atom_t type,
                     int bits,
                     const void* data,
                     std::size_t count) const {
        xcb_change_property(xcb_, XCB_PROP_MODE_REPLACE, window, property, type,
                            static_cast<std::uint8_t>(bits), static_cast<std::uint32_t>(count),
                            data);
    }

  private:
    X11Connection(xcb_connection_t* xcb, xcb_screen_t* screen);
    void internAtoms(int screenNumber);
    void queryExtensions();

    xcb_connection_t* xcb_;
    xcb_screen_t* screen_;
    std::array<xcb_atom_t, static_cast<std::size_t>(X11Atom::kCount)> atoms_{};
    std::uint8_t shmCompletionEvent_ = 0;
    bool hasShape_ = false;
    bool hasRandr_ = false;
};

/// How pixels of a window look.
struct X11PixelFormat {
    std::uint8_t depth = 0;
    xcb_visualid_t visual = 0;
    /// The server wants the bytes the other way round.
    bool swapped = false;

    explicit operator bool() const { return depth != 0; }
};

/// The format for a child of `parent` (or of the root window): 32 bits a pixel with 8 for each of
/// red, green and blue. False when the server has none.
X11PixelFormat formatForWindow(const X11Connection& connection, xcb_window_t parent);
/// A format with alpha; false when there is none.
X11PixelFormat formatWithAlpha(const X11Connection& connection);

} // namespace Sorel
