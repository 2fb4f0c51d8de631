// The platform's popup menu.
#pragma once

#include "draw/Geometry.h"

#include <functional>
#include <string>
#include <vector>

namespace Sorel {

struct MenuItem {
    std::string title;
    /// Given back when chosen; not negative.
    int id = 0;
    bool disabled = false;
    /// A heading, not to be chosen.
    bool isTitle = false;
    bool checked = false;
    bool separator = false;
    std::vector<MenuItem> submenu;
};

struct MenuRequest {
    std::vector<MenuItem> items;
    /// The control that opens the menu, in frame coordinates: the menu hangs from its lower edge,
    /// or stands on its upper edge where there is no room below. A rectangle of no size: at that
    /// point.
    CRect anchor;
    /// Pixels; the menu is at least this wide.
    double minWidth = 0.0;
};

/// Shows one menu at a time and never blocks.
/// Threads: GUI thread.
class IOSOptionMenu {
  public:
    /// The id of the chosen item, or -1 when it was dismissed. Called once per popup, from a later
    /// idle of the frame.
    using Answer = std::function<void(int id)>;

    virtual ~IOSOptionMenu() = default;
    /// False when it cannot be shown; then `answer` is not called.
    virtual bool popup(const MenuRequest& request, Answer answer) = 0;
    /// Takes an open menu away without an answer.
    virtual void cancel() = 0;
    virtual bool isOpen() const = 0;
};

} // namespace Sorel
