// The base of all controls: a value, somebody who listens, and maybe a parameter.
#pragma once

#include "frame/PluginParameter.h"
#include "tree/View.h"

#include <string>

namespace Sorel {

class CControl;

/// Hears of a control's user. Must outlive the control, or take itself out with setListener.
class CControlListener {
  public:
    virtual void valueChanged(CControl* control) = 0;
    /// A press with a modifier; non-zero when taken: the control then does nothing with it.
    virtual int controlModifierClicked(CControl* /*control*/, std::int32_t /*buttons*/) {
        return 0;
    }
    virtual void beginEdit(CControl* /*control*/) {}
    virtual void endEdit(CControl* /*control*/) {}

  protected:
    ~CControlListener() = default;
};

/// The parameter's value of the moment with its unit, as displays show it.
std::string valueText(Vardo::IPluginParameter& parameter);

/// Keeps a value between vmin and vmax, 0..1 for most. A control with a parameter shows and sets
/// its normalised value, and enters itself with the editor while it is in a tree.
class CControl : public CView {
  public:
    /// `listener` and `background` may be null.
    CControl(const CRect& size,
             CControlListener* listener,
             std::int32_t tag,
             CBitmap* background = nullptr);
    CControl(const CControl& other);
    ~CControl() override;

    // ---- Value -------------------------------------------------------------------------------
    virtual void setValue(double value) { value_ = value; }
    virtual double getValue() const { return value_; }
    void setDefaultValue(double value) { defaultValue_ = value; }
    double getDefaultValue() const { return defaultValue_; }
    void setMin(float value) { vmin_ = value; }
    float getMin() const { return vmin_; }
    void setMax(float value) { vmax_ = value; }
    float getMax() const { return vmax_; }
    /// Change of value per wheel notch.
    void setWheelInc(float increment) { wheelInc_ = increment; }
    float getWheelInc() const { return wheelInc_; }
    /// The control shows the square root of the parameter's value.
    void setSqrtCurve(bool on) { sqrtCurve_ = on; }
    void setTag(std::int32_t tag) { tag_ = tag; }
    std::int32_t getTag() const { return tag_; }
    /// Brings the value between vmin and vmax.
    virtual void bounceValue();
    /// A double click or a control click sets the default value: true when it did, and everybody
    /// was told.
    virtual bool checkDefaultValue(std::int32_t buttons);

    // ---- Parameter ---------------------------------------------------------------------------
    /// Null takes it away. The default value becomes the parameter's. A gesture ends before.
    virtual void setParameter(Vardo::IPluginParameter* parameter);
    Vardo::IPluginParameter* getParameter() const { return parameter_; }
    /// Around a gesture: the host and the listener are told.
    virtual void beginEdit();
    virtual void endEdit();
    /// Gives the value to the parameter.
    virtual void notifyParameter();

    CControlListener* getListener() const { return listener_; }
    void setListener(CControlListener* listener) { listener_ = listener; }
    /// `smooth`: the picture moves to the value; else it is there at once.
    virtual void startAnimation(bool /*smooth*/) {}

    // CView
    /// Inactive, a gesture ends.
    void setActive(bool state) override;
    void onParameterChanged(int parameterIndex) override;
    bool offerModifierClick(std::int32_t buttons) override;
    int attached(CViewContainer* parent) override;
    int removed(CViewContainer* parent) override;
    bool isTypeOf(const char* name) const override;
    CView* newCopy() const override { return new CControl(*this); }
    const char* getClassName() const override { return "CControl"; }

  protected:
    /// Tells the listener.
    void reportValue();
    void readParameter();

  private:
    void enterWithEditor();

    CControlListener* listener_;
    std::int32_t tag_;
    double value_ = 0.0;
    double defaultValue_ = 0.5;
    float vmin_ = 0.0F;
    float vmax_ = 1.0F;
    float wheelInc_ = 0.02F;
    Vardo::IPluginParameter* parameter_ = nullptr;
    bool sqrtCurve_ = false;
    bool editing_ = false;
};

} // namespace Sorel
