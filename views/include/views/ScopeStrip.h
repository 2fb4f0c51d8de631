// The picture of a curve on a ring of columns, so that scrolling paints only what is new.
#pragma once

#include "draw/Bitmap.h"

#include <functional>
#include <vector>

namespace Sorel {

/// A scrolling curve shows the same columns again and again, each time a little further to the
/// left. They are painted once, into a picture as wide as the ring, and drawn from there.
///
/// A *place* is a column of the ring and of the picture, a *column* one of the display: column c
/// shows place (first + c) modulo the width.
/// Threads: GUI thread.
class ScopeStrip {
  public:
    /// Paints some columns of the display: `context` is empty there and clipped to them, column 0
    /// lies at its `left`, and the top of the display at 0.
    using Painter = std::function<void(CDrawContext& context, double left)>;

    void setWidth(int places);
    /// Everything is painted anew.
    void invalidate();
    /// So is this place, and those beside it: an outline's corner shows in its neighbours.
    void invalidate(int place);
    /// The display now begins here: at the seam the curve begins and ends.
    void setFirst(int place);

    /// Puts the whole display at `rect` of the context; only what is stale calls `paint`.
    void draw(CDrawContext& context, const CRect& rect, const Painter& paint);

  private:
    static constexpr int kReach = 2;    ///< of a column's curve to either side
    static constexpr int kMergeGap = 8; ///< painting this much again costs less than another call

    int width() const { return static_cast<int>(stale_.size()); }
    int placeOf(int column) const { return (first_ + column) % width(); }
    void refresh(const Painter& paint);
    void repaint(int firstColumn, int endColumn, const Painter& paint);

    std::vector<std::uint8_t> stale_; ///< by place
    bool anyStale_ = false;
    int first_ = 0;
    Counted<CBitmap> picture_;
};

} // namespace Sorel
