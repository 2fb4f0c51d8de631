// Drags of other programs over our window (the XDND protocol, version 5).
#pragma once

#include "platform/Frame.h"
#include "x11/X11Selection.h"

namespace Sorel {

/// Takes lists of files and plain text. The views hear of a drag once its data is there; until then
/// the source waits for our answer.
class X11DropTarget {
  public:
    static constexpr std::uint32_t kVersion = 5;

    X11DropTarget(const X11Connection& connection, xcb_window_t window, IFrameEvents& events);

    /// True when the event belongs to a drag.
    bool onEvent(const xcb_generic_event_t& event, std::uint64_t now);
    void onIdle(std::uint64_t now) { reader_.onIdle(now); }

    /// What the views think of the drag; the source hears of it with the next answer.
    void setAccepted(bool accepted) { accepted_ = accepted; }
    CDragContainer* container() const { return container_.get(); }
    /// The window is gone: no more calls.
    void detach() { events_ = nullptr; }

  private:
    bool onMessage(const xcb_client_message_event_t& message, std::uint64_t now);
    void onEnter(const xcb_client_message_event_t& message);
    void onPosition(const xcb_client_message_event_t& message, std::uint64_t now);
    void onDrop(const xcb_client_message_event_t& message, std::uint64_t now);
    void onData(bool ok, const std::string& bytes);
    void requestData(xcb_timestamp_t time, std::uint64_t now);
    void chooseKind(const xcb_atom_t* kinds, std::size_t count);
    void moveTo(CPoint onScreen);
    void sendStatus();
    void drop();
    void leave();
    void send(X11Atom type, std::uint32_t flags, std::uint32_t action);
    void watchSource(bool on) const;

    const X11Connection& connection_;
    xcb_window_t window_;
    IFrameEvents* events_;
    X11SelectionReader reader_;

    xcb_window_t source_ = XCB_NONE;
    xcb_atom_t kind_ = XCB_NONE; // of the data we take; none: nothing that we know
    Counted<CDragContainer> container_;
    bool requested_ = false;
    bool entered_ = false; // the views know of the drag
    bool accepted_ = false;
    bool owesStatus_ = false;
    bool dropPending_ = false;
    CPoint screenPosition_;
    CPoint position_;
};

} // namespace Sorel
