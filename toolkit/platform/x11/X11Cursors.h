// The mouse's pictures, from the user's theme.
#pragma once

#include "platform/Input.h"
#include "x11/X11Connection.h"

#include <map>

struct xcb_cursor_context_t;

namespace Sorel {

/// Loaded when first wanted; freed with the connection.
class X11Cursors {
  public:
    explicit X11Cursors(const X11Connection& connection);
    ~X11Cursors();
    X11Cursors(const X11Cursors&) = delete;
    X11Cursors& operator=(const X11Cursors&) = delete;

    /// XCB_NONE, the parent's cursor, where the theme has none.
    xcb_cursor_t get(CursorKind kind);

  private:
    xcb_connection_t* xcb_;
    xcb_cursor_context_t* context_ = nullptr;
    std::map<CursorKind, xcb_cursor_t> loaded_;
};

} // namespace Sorel
