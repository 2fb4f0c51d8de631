// The film-strip knob: dragged, wheeled, with fine adjustment and a smooth picture.
#pragma once

#include "controls/Control.h"
#include "controls/WheelNotches.h"
#include "draw/Bitmap.h"

namespace Sorel {

/// The picture holds `frameCount` frames stacked vertically, each `frameHeight` pixels high. Drag
/// up for more; shift or the right button makes it `fineFactor` times finer.
class Sorel_AnimKnob : public CControl {
  public:
    Sorel_AnimKnob(const CRect& size,
                   CControlListener* listener,
                   std::int32_t tag,
                   std::int32_t frameCount,
                   int frameHeight,
                   CBitmap* background,
                   Vardo::IPluginParameter* parameter = nullptr);
    Sorel_AnimKnob(const Sorel_AnimKnob& other);

    /// The value sticks to the centre within `zone` on both sides.
    void setSnapToCenter(bool on) { snapToCenter_ = on; }
    void setCenter(double value, double zone) {
        centerValue_ = value;
        centerZone_ = zone;
    }
    /// Pixels of mouse movement for the whole range; 0 means 200.
    void setDragRange(double pixels) { dragRange_ = pixels; }
    void setFineFactor(double factor) { fineFactor_ = factor; }
    /// Only a round area around the middle takes the mouse.
    void setCircular(bool on) { circular_ = on; }
    void setKnobRadius(double pixels) { knobRadius_ = pixels; }
    /// The value stands on one of `count` steps, evenly spread; fewer than 2: no steps.
    void setStepped(bool on, std::int32_t count = 0);
    bool isStepped() const { return stepped_; }
    std::int32_t getStepCount() const { return stepCount_; }
    void setAnimate(bool on) { animate_ = on; }
    bool isDragging() const { return dragging_; }
    double getAnimatedValue() const { return animatedValue_; }

    void draw(CDrawContext& context) override;
    int onMouseDown(CPoint where, std::int32_t* buttons) override;
    int onMouseUp(CPoint where, std::int32_t* buttons) override;
    int onMouseMoved(CPoint where, std::int32_t* buttons) override;
    bool hitTest(CPoint where, std::int32_t buttons = Buttons::kAny) const override;
    using CControl::onWheel;
    bool onWheel(CPoint where, float distance, std::int32_t* buttons) override;
    /// Not smooth: the picture is at the value at once.
    void startAnimation(bool smooth) override;
    bool checkDefaultValue(std::int32_t buttons) override;
    void endEdit() override;
    bool isTypeOf(const char* name) const override;
    CView* newCopy() const override { return new Sorel_AnimKnob(*this); }
    const char* getClassName() const override { return "Sorel_AnimKnob"; }

  protected:
    /// Pixels moved since the press; up is positive.
    virtual double getDragDistance(CPoint from, CPoint to) const { return from.y - to.y; }
    /// Moves the picture 40 % of its way; true while it has not arrived.
    bool stepAnimation();
    /// `value` on the nearest step.
    double onStep(double value) const;

  private:
    void computeStep(std::int32_t buttons);
    void changeTo(double value);

    double centerValue_ = 0.5;
    double centerZone_ = 0.03;
    bool snapToCenter_ = false;
    CPoint startWhere_;
    CPoint lastWhere_{-1.0, -1.0};
    double startValue_ = 0.0;
    double dragRange_ = 200.0;
    double pixelStep_ = 0.0;
    std::int32_t lastButtons_ = 0;
    double knobRadius_;
    bool circular_ = true;
    bool dragging_ = false;
    double fineFactor_ = 10.0;
    bool stepped_ = false;
    std::int32_t stepCount_ = 0;
    std::int32_t frameCount_;
    int frameHeight_;
    Counted<CBitmap> offscreen_;
    double animatedValue_ = 0.0;
    bool animate_ = true;
    double animationSpeed_ = 0.4;
    WheelNotches notches_; // of a stepped knob
};

} // namespace Sorel
