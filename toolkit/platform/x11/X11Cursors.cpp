// The mouse's pictures.
#include "x11/X11Cursors.h"

#include <xcb/xcb_cursor.h>

#include <initializer_list>

namespace Sorel {

namespace {

/// Names in themes: today's, then the old ones of X.
std::initializer_list<const char*> namesOf(CursorKind kind) {
    static constexpr auto kArrow = {"default", "left_ptr"};
    static constexpr auto kWait = {"wait", "watch"};
    static constexpr auto kHorizontal = {"ew-resize", "sb_h_double_arrow"};
    static constexpr auto kVertical = {"ns-resize", "sb_v_double_arrow"};
    static constexpr auto kSizeAll = {"move", "fleur"};
    static constexpr auto kHand = {"pointer", "hand2"};
    static constexpr auto kText = {"text", "xterm"};
    static constexpr auto kCross = {"crosshair", "cross"};
    static constexpr auto kForbidden = {"not-allowed", "X_cursor"};
    switch (kind) {
    case CursorKind::kWait:
        return kWait;
    case CursorKind::kHorizontal:
        return kHorizontal;
    case CursorKind::kVertical:
        return kVertical;
    case CursorKind::kSizeAll:
        return kSizeAll;
    case CursorKind::kHand:
        return kHand;
    case CursorKind::kText:
        return kText;
    case CursorKind::kCross:
        return kCross;
    case CursorKind::kForbidden:
        return kForbidden;
    case CursorKind::kArrow:
        break;
    }
    return kArrow;
}

} // namespace

X11Cursors::X11Cursors(const X11Connection& connection)
    : xcb_(connection.xcb()) {
    if (xcb_cursor_context_new(xcb_, &connection.screen(), &context_) < 0) context_ = nullptr;
}

X11Cursors::~X11Cursors() {
    for (const auto& [kind, cursor] : loaded_)
        if (cursor != XCB_NONE) xcb_free_cursor(xcb_, cursor);
    if (context_ != nullptr) xcb_cursor_context_free(context_);
}

xcb_cursor_t X11Cursors::get(CursorKind kind) {
    if (context_ == nullptr) return XCB_NONE;
    const auto known = loaded_.find(kind);
    if (known != loaded_.end()) return known->second;
    xcb_cursor_t cursor = XCB_NONE;
    for (const char* name : namesOf(kind))
        if (cursor == XCB_NONE) cursor = xcb_cursor_load_cursor(context_, name);
    return loaded_[kind] = cursor;
}

} // namespace Sorel
