// What a view paints the same way each time: scales, grids, names.
#pragma once

#include "draw/Bitmap.h"
#include "tree/View.h"

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
        draw(context, rect, nullptr, paint);
    }

    /// The same with what lies behind `view` in the picture: copied instead of blended.
    template <class Paint>
    void drawWithGround(CDrawContext& context, const CView& view, const CRect& rect, Paint paint) {
        draw(context, rect, &view, paint);
    }

    /// Whether drawing fills all of `rect`: see CView::covers.
    bool covers(const CRect& rect) const {
        return isOpaque_ && picture_ && painted_.contains(rect);
    }

  private:
    template <class Paint>
    void draw(CDrawContext& context, const CRect& rect, const CView* ground, Paint paint) {
        const int width = static_cast<int>(rect.width());
        const int height = static_cast<int>(rect.height());
        if (width <= 0 || height <= 0) return;
        if (!picture_ || rect != painted_) {
            painted_ = rect;
            picture_ = Counted<CBitmap>::make(width, height);
            CDrawContext& own = picture_->context();
            own.setOffset({-rect.left, -rect.top});
            if (ground != nullptr) ground->drawGround(own, rect);
            paint(own);
            IOSBitmap& surface = picture_->surface();
            surface.findOpaque();
            isOpaque_ = surface.isOpaque;
        }
        picture_->draw(context, rect);
    }

    Counted<CBitmap> picture_;
    bool isOpaque_ = false;
    CRect painted_;
};

} // namespace Sorel
