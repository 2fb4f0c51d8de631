// Draws the columns of a popup menu.
#pragma once

#include "common/MenuColumn.h"
#include "draw/DrawContext.h"
#include "draw/OSBitmap.h"

namespace Sorel {

/// The picture of one column, with its shadow around it when wanted. The shadow and the panel are
/// made once, the rows are drawn again with each change.
class MenuPicture {
  public:
    /// Pixels that the shadow needs around the panel.
    static constexpr int kShadowSide = 16;
    static constexpr int kShadowTop = 12;
    static constexpr int kShadowBottom = 20;

    MenuPicture(const MenuColumn& column, bool withShadow);

    /// Where the panel lies in the picture.
    CPoint panelOrigin() const { return origin_; }
    /// Draws what changed; true when the picture is another than before.
    bool update();
    /// Premultiplied; opaque inside the panel.
    IOSBitmap& bitmap() { return picture_; }

  private:
    void drawGround();
    void drawRows();
    void drawRow(int row);
    void drawScrollArrows();
    CRect local(const CRect& onScreen) const;

    const MenuColumn& column_;
    CPoint origin_;
    CMemoryBitmap ground_;
    CMemoryBitmap picture_;
    CRenderer renderer_;
    Counted<CDrawContext> context_;
    std::uint32_t revision_ = 0;
    bool drawn_ = false;
};

/// Measures with the fonts that MenuPicture draws with.
MenuTextWidth menuTextWidth();

} // namespace Sorel
