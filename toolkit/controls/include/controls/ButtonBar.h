// The row of buttons of which one is chosen.
#pragma once

#include "controls/Control.h"
#include "draw/Bitmap.h"

#include <array>

namespace Sorel {

/// Its value is the index of the chosen button.
class CButtonBar : public CControl {
  public:
    static constexpr int kMaxButtons = 10;

    CButtonBar(const CRect& size, CControlListener* listener, std::int32_t tag);

    /// The picture holds two states stacked, off above on. The area that takes the mouse is
    /// `width` by `height` pixels; it stands `gap` pixels right of the one before, `top` below the
    /// bar's upper edge, and the picture is centred on it. False for an eleventh button and for a
    /// missing picture, which leaves no gap.
    bool addButton(CBitmap* picture, double width, double height, double gap, double top);
    int getNumButtons() const { return count_; }
    /// In the parent's coordinates.
    CRect hitRect(int index) const;

    void setValue(double value) override;
    int getIndex() const { return static_cast<int>(getValue()); }
    void draw(CDrawContext& context) override;
    int onMouseDown(CPoint where, std::int32_t* buttons) override;
    bool isTypeOf(const char* name) const override;
    CView* newCopy() const override { return new CButtonBar(*this); }
    const char* getClassName() const override { return "CButtonBar"; }

  private:
    struct Button {
        Counted<CBitmap> picture;
        CRect sourceRect; // one state
        double width = 0.0;
        double height = 0.0;
        double gap = 0.0;
        CRect hitRect; // from the bar's top left corner
        CRect drawRect;
    };
    std::array<Button, kMaxButtons> buttons_;
    int count_ = 0;
};

} // namespace Sorel
