// Reading what another program offers: the clipboard, or the data of a drag.
#pragma once

#include "x11/X11Connection.h"

#include <functional>
#include <string>

namespace Sorel {

/// One conversion at a time, in one piece or in many (INCR). Bounded in size and in time.
class X11SelectionReader {
  public:
    static constexpr std::size_t kMaxBytes = 64 * 1024;
    static constexpr std::uint64_t kPatienceMilliseconds = 2000;

    /// `bytes` is empty and `ok` false when there is nothing of that kind, it came too late or is
    /// too large.
    using Done = std::function<void(bool ok, const std::string& bytes)>;

    /// The owner answers into `property` of `window`, which must select property changes.
    X11SelectionReader(const X11Connection& connection,
                       xcb_window_t window,
                       xcb_atom_t selection,
                       xcb_atom_t property);

    void start(xcb_atom_t kind, xcb_timestamp_t time, std::uint64_t now, Done done);
    void cancel() { done_ = nullptr; }
    bool isRunning() const { return done_ != nullptr; }

    void onSelectionNotify(const xcb_selection_notify_event_t& event, std::uint64_t now);
    void onPropertyNotify(const xcb_property_notify_event_t& event, std::uint64_t now);
    void onIdle(std::uint64_t now);

  private:
    struct Property {
        xcb_atom_t type = XCB_NONE;
        std::string bytes;
        bool whole = false;
    };
    Property takeProperty() const;
    void finish(bool ok);

    const X11Connection& connection_;
    xcb_window_t window_;
    xcb_atom_t selection_;
    xcb_atom_t property_;
    Done done_;
    bool incremental_ = false;
    std::string bytes_;
    std::uint64_t lastNews_ = 0;
};

} // namespace Sorel
