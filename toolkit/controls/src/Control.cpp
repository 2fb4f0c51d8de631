#include "controls/Control.h"

#include "draw/Bitmap.h"
#include "tree/SorelineEditor.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace Sorel {

std::string valueText(Vardo::IPluginParameter& parameter) {
    char number[128] = ""; // formatValue may use half of it
    char whole[128] = "";
    parameter.formatValue(parameter.getValue(), number, 0);
    parameter.formatValue(parameter.getValue(), whole, Vardo::kWithUnit);
    // A unit that only stands behind the number gets some air; other texts are as they are.
    const std::string unit = parameter.getUnitText();
    std::string text = number;
    if (unit.empty() || text + unit != whole) return whole;
    text += ' ';
    return text += unit;
}

CControl::CControl(const CRect& size,
                   CControlListener* listener,
                   std::int32_t tag,
                   CBitmap* background)
    : CView(size)
    , listener_(listener)
    , tag_(tag) {
    if (background != nullptr) CView::setBackground(background);
}

CControl::CControl(const CControl& other)
    : CView(other)
    , listener_(other.listener_)
    , tag_(other.tag_)
    , value_(other.value_)
    , defaultValue_(other.defaultValue_)
    , vmin_(other.vmin_)
    , vmax_(other.vmax_)
    , wheelInc_(other.wheelInc_)
    , parameter_(other.parameter_)
    , sqrtCurve_(other.sqrtCurve_) {}

CControl::~CControl() = default;

void CControl::bounceValue() {
    if (!(value_ >= double{vmin_})) value_ = double{vmin_}; // a NaN too
    value_ = std::min(value_, double{vmax_});
}

bool CControl::checkDefaultValue(std::int32_t buttons) {
    const bool wanted = (buttons & Buttons::kLeft) != 0 &&
                        (buttons & (Buttons::kDoubleClick | Buttons::kControl)) != 0;
    if (!wanted) return false;
    beginEdit();
    setValue(defaultValue_);
    notifyParameter();
    reportValue();
    endEdit();
    setDirty(true);
    return true;
}

void CControl::setParameter(Vardo::IPluginParameter* parameter) {
    if (parameter == parameter_) return;
    endEdit(); // the gesture was for the old one
    if (CSorelineEditor* editor = getEditor()) editor->removeControl(this);
    parameter_ = parameter;
    enterWithEditor();
    readParameter();
    setDirty(true);
}

void CControl::enterWithEditor() {
    if (parameter_ == nullptr) return;
    if (CSorelineEditor* editor = getEditor()) editor->addControlToParameter(*parameter_, this);
}

void CControl::readParameter() {
    if (parameter_ == nullptr) return;
    const auto shown = [this](float normalized) {
        return sqrtCurve_ ? std::sqrt(double{normalized}) : double{normalized};
    };
    defaultValue_ = shown(parameter_->getDefaultNormalizedValue());
    value_ = shown(parameter_->getNormalizedValue());
}

void CControl::setActive(bool state) {
    if (!state) endEdit();
    CView::setActive(state);
}

void CControl::onParameterChanged(int parameterIndex) {
    if (parameter_ == nullptr || parameter_->getId() != parameterIndex) return;
    readParameter();
    setDirty(true);
}

void CControl::beginEdit() {
    if (editing_) return;
    editing_ = true;
    if (getFrame() != nullptr) getFrame()->beginEdit(parameter_);
    if (listener_ != nullptr) listener_->beginEdit(this);
}

void CControl::endEdit() {
    if (!editing_) return;
    editing_ = false;
    if (getFrame() != nullptr) getFrame()->endEdit(parameter_);
    if (listener_ != nullptr) listener_->endEdit(this);
}

void CControl::notifyParameter() {
    if (parameter_ == nullptr || getFrame() == nullptr) return;
    getFrame()->performEdit(parameter_, sqrtCurve_ ? value_ * value_ : value_, this);
}

void CControl::reportValue() {
    if (listener_ != nullptr) listener_->valueChanged(this);
}

bool CControl::offerModifierClick(std::int32_t buttons) {
    return listener_ != nullptr && listener_->controlModifierClicked(this, buttons) != 0;
}

int CControl::attached(CViewContainer* parent) {
    const int answer = CView::attached(parent);
    if (answer != 0) {
        enterWithEditor();
        readParameter();
    }
    return answer;
}

int CControl::removed(CViewContainer* parent) {
    endEdit(); // a gesture does not outlive its window
    return CView::removed(parent);
}

bool CControl::isTypeOf(const char* name) const {
    return std::strcmp(name, "CControl") == 0 || CView::isTypeOf(name);
}

} // namespace Sorel
