// One open column of a popup menu: where its rows lie, which one is lit, how far it is scrolled.
#pragma once

#include "platform/Menu.h"

#include <cstdint>
#include <functional>

namespace Sorel {

/// Pixels of the menu's look. Rows begin below the frame's edge.
namespace MenuMetrics {
inline constexpr double kRow = 20.0;
inline constexpr double kSeparator = 9.0;
/// Above the first row, below the last one, and beside the lit row.
inline constexpr double kEdge = 4.0;
inline constexpr double kTextLeft = 26.0;
inline constexpr double kTextRight = 26.0;
inline constexpr double kFontSize = 11.0;
inline constexpr double kTitleFontSize = 9.0;
/// At the top and the bottom of a column that does not fit, while there is more that way.
inline constexpr double kScrollArrow = 14.0;
inline constexpr double kMinWidth = 80.0;
inline constexpr double kMaxWidth = 480.0;
/// Between a column and the sub-menu beside it.
inline constexpr double kGap = 2.0;
} // namespace MenuMetrics

/// The width of a row's text in the menu's font, pixels; `title` for headings.
using MenuTextWidth = std::function<double(const std::string& text, bool title)>;

class MenuColumn {
  public:
    /// `items` stays unchanged as long as this lives. `room`: the screen's usable part.
    MenuColumn(const std::vector<MenuItem>& items,
               double minWidth,
               const CRect& room,
               const MenuTextWidth& textWidth);

    const std::vector<MenuItem>& items() const { return *items_; }
    int count() const { return static_cast<int>(items_->size()); }
    const MenuItem& item(int row) const { return (*items_)[static_cast<std::size_t>(row)]; }
    /// The panel on the screen.
    const CRect& rect() const { return rect_; }
    void moveTo(CPoint topLeft);

    /// Can be lit: no separator, heading or disabled item.
    bool isSelectable(int row) const;
    int hover() const { return hover_; }
    void setHover(int row);
    /// The next row to light from `from` (-1: before the first) in direction `step` (1 or -1),
    /// beginning again at the other end; -1 when none can be.
    int nextSelectable(int from, int step) const;
    /// The next row after the lit one whose text begins with this character, whatever its case.
    int nextBeginningWith(char32_t character) const;

    /// Screen rectangle of a row, as scrolled: parts may lie outside `rowArea`.
    CRect rowRect(int row) const;
    /// Where rows can be seen.
    CRect rowArea() const;
    /// The row at a point, -1 for none.
    int rowAt(CPoint point) const;

    bool isScrollable() const { return contentHeight_ > rect_.height(); }
    bool canScrollUp() const { return scroll_ > 0.0; }
    bool canScrollDown() const { return scroll_ < maxScroll(); }
    /// -1, 1: the point is on the arrow that scrolls this way; else 0.
    int scrollArrowAt(CPoint point) const;
    void scrollBy(double pixels);
    void scrollTo(int row);

    /// Changes with everything that has to be painted again.
    std::uint32_t revision() const { return revision_; }

  private:
    double maxScroll() const;

    const std::vector<MenuItem>* items_;
    std::vector<double> tops_; // of the rows in the unscrolled column, and its foot
    double contentHeight_ = 0.0;
    CRect rect_;
    double scroll_ = 0.0;
    int hover_ = -1;
    std::uint32_t revision_ = 0;
};

} // namespace Sorel
