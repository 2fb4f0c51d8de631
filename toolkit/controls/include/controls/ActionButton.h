// Buttons made of a two-state picture.
#pragma once

#include "controls/Control.h"

#include <string>

namespace Sorel {

/// The picture holds two states stacked, off above on; changing from one to the other fades.
class Sorel_ActionButton : public CControl {
  public:
    enum class Mode : int { kMomentary = 0, kToggle = 1 };

    Sorel_ActionButton(const CRect& size,
                       CControlListener* listener,
                       std::int32_t tag,
                       Mode mode,
                       CBitmap* background);

    bool isPressed() const { return pressed_; }
    /// 1: six fades a second.
    void setFadeSpeed(double speed) { fadeSpeed_ = speed; }
    /// Shows the off picture when pressed.
    void setInverted(bool on) { inverted_ = on; }
    /// 0..255, how much of the on picture is seen.
    double getFadeAlpha() const { return fadeAlpha_; }

    void setValue(double value) override;
    void draw(CDrawContext& context) override;
    int onMouseDown(CPoint where, std::int32_t* buttons) override;
    int onMouseUp(CPoint where, std::int32_t* buttons) override;
    void onParameterChanged(int parameterIndex) override;
    void setParameter(Vardo::IPluginParameter* parameter) override;
    int attached(CViewContainer* parent) override;
    void setBackground(CBitmap* bitmap) override;
    void setViewSize(const CRect& rect, bool invalidate = true) override;
    void startAnimation(bool smooth) override;
    bool isTypeOf(const char* name) const override;
    CView* newCopy() const override { return new Sorel_ActionButton(*this); }
    const char* getClassName() const override { return "Sorel_ActionButton"; }

  protected:
    bool isAnimating() const { return animating_; }

  private:
    void layOut();
    void stepFade();
    void settle();

    bool pressed_ = false;
    Mode mode_;
    double fadeAlpha_ = 0.0;
    std::uint64_t lastChangeTime_ = 0;
    double fadeSpeed_ = 1.0;
    bool animating_ = false;
    bool inverted_ = false;
    CRect offRect_; // in the picture
    CRect onRect_;
};

/// A button that switches a parameter on and off.
class CSwitch : public Sorel_ActionButton {
  public:
    CSwitch(CPoint topLeft,
            CControlListener* listener,
            std::int32_t tag,
            CBitmap* picture,
            Vardo::IPluginParameter* parameter = nullptr);

    /// A caption to the right, which is part of the switch for the mouse. Empty: none.
    void setCaption(const char* text, double width);
    void draw(CDrawContext& context) override;
    CView* newCopy() const override { return new CSwitch(*this); }
    const char* getClassName() const override { return "CSwitch"; }

  private:
    std::string caption_;
    CRect pictureRect_;
};

} // namespace Sorel
