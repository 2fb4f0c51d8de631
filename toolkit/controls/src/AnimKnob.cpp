#include "controls/AnimKnob.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace Sorel {

namespace {
constexpr double kArrived = 0.001;
constexpr double kAntiDenormal = 1e-19;
constexpr double kDefaultRange = 200.0; // pixels
constexpr std::int32_t kDragButtons = Buttons::kLeft | Buttons::kRight;
constexpr std::int32_t kFineButtons = Buttons::kShift | Buttons::kRight;
constexpr float kFineWheel = 0.1F;
} // namespace

Sorel_AnimKnob::Sorel_AnimKnob(const CRect& size,
                               CControlListener* listener,
                               std::int32_t tag,
                               std::int32_t frameCount,
                               int frameHeight,
                               CBitmap* background,
                               Vardo::IPluginParameter* parameter)
    : CControl(size, listener, tag, background)
    , knobRadius_(size.width() / 2.0)
    , frameCount_(std::max(frameCount, 1))
    , frameHeight_(frameHeight) {
    setParameter(parameter);
    animatedValue_ = getValue();
}

Sorel_AnimKnob::Sorel_AnimKnob(const Sorel_AnimKnob& other)
    : CControl(other)
    , centerValue_(other.centerValue_)
    , centerZone_(other.centerZone_)
    , snapToCenter_(other.snapToCenter_)
    , dragRange_(other.dragRange_)
    , knobRadius_(other.knobRadius_)
    , circular_(other.circular_)
    , fineFactor_(other.fineFactor_)
    , stepped_(other.stepped_)
    , stepCount_(other.stepCount_)
    , frameCount_(other.frameCount_)
    , frameHeight_(other.frameHeight_)
    , animatedValue_(other.animatedValue_)
    , animate_(other.animate_)
    , animationSpeed_(other.animationSpeed_) {}

void Sorel_AnimKnob::setStepped(bool on, std::int32_t count) {
    stepped_ = on && count >= 2;
    stepCount_ = stepped_ ? count : 0;
}

double Sorel_AnimKnob::onStep(double value) const {
    if (!stepped_) return value;
    const double last = stepCount_ - 1;
    return std::round(value * last) / last;
}

void Sorel_AnimKnob::computeStep(std::int32_t buttons) {
    double range = dragRange_ == 0.0 ? kDefaultRange : dragRange_;
    if ((buttons & kFineButtons) != 0) range *= fineFactor_;
    pixelStep_ = (double{getMax()} - double{getMin()}) / range;
}

int Sorel_AnimKnob::onMouseDown(CPoint where, std::int32_t* buttons) {
    if ((*buttons & kDragButtons) == 0) return kMouseNotHandled;
    if (checkDefaultValue(*buttons)) return kMouseHandledDone;
    dragging_ = true;
    beginEdit();
    startWhere_ = where;
    startValue_ = getValue();
    // Leave the centre's zone from where the value would stand without it.
    if (snapToCenter_ && std::abs(startValue_ - centerValue_) >= 0.00001)
        startValue_ += startValue_ >= centerValue_ ? centerZone_ : -centerZone_;
    lastButtons_ = *buttons;
    computeStep(*buttons);
    lastWhere_ = where;
    return onMouseMoved(where, buttons);
}

int Sorel_AnimKnob::onMouseMoved(CPoint where, std::int32_t* buttons) {
    if ((*buttons & kDragButtons) == 0 || !dragging_)
        return hitTest(where, Buttons::kAny) ? kMouseHandled : kMouseNotHandled;
    if (where == lastWhere_) return kMouseHandled;
    lastWhere_ = where;
    const double distance = getDragDistance(startWhere_, where);
    if (*buttons != lastButtons_) {
        const double before = pixelStep_;
        computeStep(*buttons);
        startValue_ += (before - pixelStep_) * distance; // the value stays where it is
        lastButtons_ = *buttons;
    }
    double value = startValue_ + distance * pixelStep_;
    if (snapToCenter_) {
        if (std::abs(value - centerValue_) <= centerZone_)
            value = centerValue_;
        else
            value += value > centerValue_ ? -centerZone_ : centerZone_;
    }
    changeTo(std::clamp(value, 0.0, 1.0));
    startAnimation(false);
    setDirty(true);
    return kMouseHandled;
}

void Sorel_AnimKnob::changeTo(double value) {
    const double before = getValue();
    setValue(onStep(value));
    bounceValue();
    if (getValue() == before) return;
    notifyParameter();
    reportValue();
}

int Sorel_AnimKnob::onMouseUp(CPoint /*where*/, std::int32_t* /*buttons*/) {
    if (!dragging_) return kMouseNotHandled;
    endEdit();
    startAnimation(true);
    return kMouseHandled;
}

bool Sorel_AnimKnob::hitTest(CPoint where, std::int32_t buttons) const {
    if (!CControl::hitTest(where, buttons)) return false;
    if (!circular_) return true;
    const CPoint centre = getViewSize().centre();
    return std::hypot(where.x - std::floor(centre.x), where.y - std::floor(centre.y)) <=
           knobRadius_;
}

bool Sorel_AnimKnob::onWheel(CPoint where, float distance, std::int32_t* buttons) {
    if (!getMouseEnabled() || !getActive() || !hitTest(where, *buttons)) return false;
    if (dragging_) return true; // one gesture at a time
    double change;
    if (stepped_) {
        change = notches_.take(double{distance}) / (stepCount_ - 1);
    } else {
        const bool fine = (*buttons & Buttons::kShift) != 0;
        change = double{distance * getWheelInc() * (fine ? kFineWheel : 1.0F)};
    }
    if (change == 0.0) return true;
    beginEdit();
    changeTo(getValue() + change);
    endEdit();
    startAnimation(false);
    setDirty(true);
    return true;
}

bool Sorel_AnimKnob::checkDefaultValue(std::int32_t buttons) {
    if (!CControl::checkDefaultValue(buttons)) return false;
    startAnimation(false);
    return true;
}

void Sorel_AnimKnob::endEdit() {
    dragging_ = false;
    CControl::endEdit();
}

void Sorel_AnimKnob::startAnimation(bool smooth) {
    if (!smooth) animatedValue_ = getValue();
    setDirty(true);
}

bool Sorel_AnimKnob::stepAnimation() {
    const double distance = getValue() - animatedValue_;
    if (std::abs(distance) <= kArrived || !animate_) {
        animatedValue_ = getValue();
        return false;
    }
    animatedValue_ += kAntiDenormal + animationSpeed_ * distance;
    return true;
}

void Sorel_AnimKnob::draw(CDrawContext& context) {
    setDirty(stepAnimation());
    CBitmap* strip = getBackground();
    if (strip == nullptr || !getActive()) return;
    const auto last = static_cast<long>(frameCount_ - 1);
    const long frame =
        std::clamp(std::lround(animatedValue_ * static_cast<double>(last)), 0L, last);
    const int width = static_cast<int>(getViewSize().width());
    const int height = static_cast<int>(getViewSize().height());
    if (!offscreen_ || offscreen_->getWidth() != width || offscreen_->getHeight() != height)
        offscreen_ = Counted<CBitmap>::make(width, height);
    CDrawContext& picture = offscreen_->context();
    picture.clear();
    picture.setDrawMode(0);
    strip->draw(picture, CRect::ofSize(0.0, 0.0, width, std::min(height, frameHeight_)),
                {0.0, static_cast<double>(frame * frameHeight_)});
    offscreen_->draw(context, getViewSize());
}

bool Sorel_AnimKnob::isTypeOf(const char* name) const {
    return std::strcmp(name, "Sorel_AnimKnob") == 0 || CControl::isTypeOf(name);
}

} // namespace Sorel
