// An open popup menu with its sub-menus: what mouse and keys do to it, on every platform the same.
#pragma once

#include "common/MenuColumn.h"
#include "platform/Input.h"

#include <memory>

namespace Sorel {

/// Knows no window: whoever shows it draws one panel per column after each event or idle, and takes
/// the result once there is one. All positions are screen pixels.
///
/// Click and click again chooses as well as press, drag and release. Sub-menus open after a short
/// while, or at once with a click; they stay open while the mouse is on its way to them.
class MenuStack {
  public:
    static constexpr std::uint64_t kOpenMilliseconds = 200;
    /// How long a mouse that heads for the sub-menu may cross other rows.
    static constexpr std::uint64_t kAimMilliseconds = 350;
    static constexpr std::uint64_t kScrollMilliseconds = 40;
    /// A press and release shorter and nearer than these two only opens the menu.
    static constexpr std::uint64_t kClickMilliseconds = 300;
    static constexpr double kClickDistance = 8.0;

    struct Setting {
        /// Of the request, on the screen.
        CRect anchor;
        /// Where menus may be.
        CRect workArea;
        CPoint mouse;
        /// A button was down when the menu opened.
        bool pressed = false;
        std::uint64_t now = 0;
    };
    MenuStack(MenuRequest request, const Setting& setting, MenuTextWidth textWidth);

    int columnCount() const { return static_cast<int>(columns_.size()); }
    const MenuColumn& column(int index) const { return *columns_[static_cast<std::size_t>(index)]; }
    /// True once an item was chosen or the menu dismissed.
    bool isFinished() const { return finished_; }
    /// The chosen item's id, -1 for none.
    int result() const { return result_; }

    void onMouseMoved(CPoint where, std::uint64_t now);
    void onMouseDown(CPoint where, std::uint64_t now);
    void onMouseUp(CPoint where, std::uint64_t now);
    void onWheel(CPoint where, double notches, std::uint64_t now);
    void onKey(const KeyEvent& key, std::uint64_t now);
    void onIdle(std::uint64_t now);
    void dismiss() { finish(-1); }

    /// Lights a row and scrolls to it, as keys do.
    void lightRow(int column, int row);
    /// Opens the sub-menu of a row at once.
    void openSubmenu(int column, int row);

  private:
    MenuColumn& at(int index) { return *columns_[static_cast<std::size_t>(index)]; }
    int columnAt(CPoint where) const;
    int keyColumn() const;
    bool hasSubmenu(int column, int row) const;
    void placeRoot();
    void placeSubmenu(MenuColumn& submenu, const MenuColumn& parent, int row) const;
    void hoverAt(int column, int row, std::uint64_t now);
    bool headsForSubmenu(CPoint from, CPoint to, int column) const;
    void closeBelow(int column);
    void choose(int column, int row);
    void finish(int id);

    MenuRequest request_;
    CRect anchor_;
    CRect workArea_;
    MenuTextWidth textWidth_;
    std::vector<std::unique_ptr<MenuColumn>> columns_;
    std::vector<int> openers_; // row of column i whose sub-menu is column i + 1

    bool finished_ = false;
    int result_ = -1;

    CPoint mouse_;
    CPoint start_;
    std::uint64_t startTime_ = 0;
    bool pressed_ = false;
    bool pressBegan_ = false;     // a press inside the menu
    bool visitedPressed_ = false; // the mouse was in the menu since the button went down
    std::uint64_t openAt_ = 0;    // 0: nothing to open
    std::uint64_t aimUntil_ = 0;  // 0: not on the way to a sub-menu
    std::uint64_t scrolledAt_ = 0;
};

} // namespace Sorel
