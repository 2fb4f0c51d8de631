// What a view paints the same way each time: scales, grids, names.
#pragma once

#include "draw/Bitmap.h"

namespace Sorel {

/// Paints once and draws the picture from then on; text and antialiased lines cost many times what
/// their pixels do.
/// Threads: GUI thread.
class StillPicture {
  public:
    /// Painted anew with the next `draw`.
    void invalidate() { picture_ = nullptr; }

    /// `paint(context)` draws in the same coordinates as `context`; what lies outside of `rect`,
    /// whose corners are whole pixels, is cut.
    template <class Paint>
    void draw(CDrawContext& context, const CRect& rect, Paint paint) {
        const int width = static_cast<int>(rect.width());
        const int height = static_cast<int>(rect.height());
        if (width <= 0 || height <= 0) return;
        if (!picture_ || rect != painted_) {
            painted_ = rect;
            picture_ = Counted<CBitmap>::make(width, height);
            CDrawContext& own = picture_->context();
            own.setOffset({-rect.left, -rect.top});
            paint(own);
        }
        picture_->draw(context, rect);
    }

  private:
    Counted<CBitmap> picture_;
    CRect painted_;
};

} // namespace Sorel
