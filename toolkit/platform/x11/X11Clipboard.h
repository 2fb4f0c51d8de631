// The clipboard: text of ours for others, text of others for us.
#pragma once

#include "x11/X11Selection.h"

namespace Sorel {

class X11Clipboard {
  public:
    X11Clipboard(const X11Connection& connection, xcb_window_t window);

    /// `time` is that of the event that caused it. More than X11SelectionReader::kMaxBytes is cut.
    void setText(const std::string& utf8, xcb_timestamp_t time);
    /// `answer` gets "" when there is no text.
    void requestText(xcb_timestamp_t time,
                     std::uint64_t now,
                     std::function<void(const std::string&)> answer);

    /// True when the event was for the clipboard.
    bool onEvent(const xcb_generic_event_t& event, std::uint64_t now);
    void onIdle(std::uint64_t now) { reader_.onIdle(now); }

  private:
    void serve(const xcb_selection_request_event_t& request);
    bool convert(xcb_window_t requestor, xcb_atom_t property, xcb_atom_t kind);

    const X11Connection& connection_;
    xcb_window_t window_;
    X11SelectionReader reader_;
    bool owned_ = false;
    xcb_timestamp_t ownedSince_ = XCB_CURRENT_TIME;
    std::string text_;
};

} // namespace Sorel
