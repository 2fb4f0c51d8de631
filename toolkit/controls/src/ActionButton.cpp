#include "controls/ActionButton.h"

#include "controls/Palette.h"
#include "draw/Bitmap.h"
#include "tree/Frame.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace Sorel {

namespace {
constexpr std::int32_t kPressButtons = Buttons::kLeft | Buttons::kRight;
constexpr double kFull = 255.0;
constexpr double kFadesPerSecond = 6.0;
/// A momentary button lights up half at once: a short press must be seen.
constexpr double kMomentaryStart = 128.0;
constexpr double kCaptionGap = 2.0; // after the picture and its glow
constexpr double kCaptionBaseline = 14.5;
constexpr double kCaptionSize = 9.0;

std::uint64_t now() { return hasPlatform() ? platform().ticks() : 0; }
} // namespace

Sorel_ActionButton::Sorel_ActionButton(
    const CRect& size, CControlListener* listener, std::int32_t tag, Mode mode, CBitmap* background)
    : CControl(size, listener, tag, background)
    , mode_(mode) {
    layOut();
}

void Sorel_ActionButton::layOut() {
    const CBitmap* picture = getBackground();
    if (picture == nullptr) return;
    const double height = std::floor(picture->getHeight() * 0.5);
    offRect_ = CRect::ofSize(0.0, 0.0, picture->getWidth(), height);
    onRect_ = CRect::ofSize(0.0, height, picture->getWidth(), height);
}

void Sorel_ActionButton::setBackground(CBitmap* bitmap) {
    CControl::setBackground(bitmap);
    layOut();
}

void Sorel_ActionButton::setViewSize(const CRect& rect, bool invalidate) {
    CControl::setViewSize(rect, invalidate);
    layOut();
}

void Sorel_ActionButton::setValue(double value) {
    CControl::setValue(value);
    const bool pressed = value > 0.5;
    if (pressed == pressed_) return;
    pressed_ = pressed;
    lastChangeTime_ = now();
    animating_ = true;
}

void Sorel_ActionButton::settle() {
    pressed_ = getValue() > 0.5;
    fadeAlpha_ = pressed_ ? kFull : 0.0;
    animating_ = false;
}

void Sorel_ActionButton::startAnimation(bool smooth) {
    lastChangeTime_ = now();
    if (smooth)
        animating_ = true;
    else
        settle();
    setDirty(true);
}

// What was set before anybody could see it needs no fade.
void Sorel_ActionButton::setParameter(Vardo::IPluginParameter* parameter) {
    CControl::setParameter(parameter);
    settle();
}

int Sorel_ActionButton::attached(CViewContainer* parent) {
    const int answer = CControl::attached(parent);
    settle();
    return answer;
}

void Sorel_ActionButton::onParameterChanged(int parameterIndex) {
    CControl::onParameterChanged(parameterIndex);
    const double value = getValue();
    setValue(value);
}

int Sorel_ActionButton::onMouseDown(CPoint where, std::int32_t* buttons) {
    if ((*buttons & kPressButtons) == 0 || !hitTest(where, *buttons)) return kMouseNotHandled;
    beginEdit();
    const bool on = mode_ == Mode::kMomentary || !pressed_;
    setValue(on ? 1.0 : 0.0);
    if (mode_ == Mode::kMomentary) fadeAlpha_ = std::max(fadeAlpha_, kMomentaryStart);
    notifyParameter();
    reportValue();
    setDirty(true);
    return kMouseHandled;
}

int Sorel_ActionButton::onMouseUp(CPoint /*where*/, std::int32_t* /*buttons*/) {
    if (mode_ == Mode::kMomentary && pressed_) {
        setValue(0.0);
        notifyParameter();
    }
    endEdit();
    setDirty(true);
    return kMouseHandled;
}

void Sorel_ActionButton::stepFade() {
    if (!animating_) return;
    const std::uint64_t time = now();
    const double seconds = static_cast<double>(time - std::min(time, lastChangeTime_)) / 1000.0;
    lastChangeTime_ = time;
    const double step = seconds * kFadesPerSecond * kFull * fadeSpeed_;
    fadeAlpha_ += pressed_ ? step : -step;
    if (fadeAlpha_ > 0.0 && fadeAlpha_ < kFull) return;
    if (pressed_ ? fadeAlpha_ >= kFull : fadeAlpha_ <= 0.0) {
        fadeAlpha_ = pressed_ ? kFull : 0.0;
        animating_ = false;
    }
}

void Sorel_ActionButton::draw(CDrawContext& context) {
    stepFade();
    setDirty(animating_);
    CBitmap* picture = getBackground();
    if (picture == nullptr) return;
    const CRect target =
        CRect::ofSize(getViewSize().left, getViewSize().top, offRect_.width(), offRect_.height());
    const CRect& off = inverted_ ? onRect_ : offRect_;
    const CRect& on = inverted_ ? offRect_ : onRect_;
    const int alpha = std::clamp(static_cast<int>(std::lround(fadeAlpha_)), 0, 255);
    // Both pictures see-through: each gets its share, or the edges would fade out in between.
    if (alpha == 0)
        picture->draw(context, target, off.topLeft());
    else if (alpha == 255)
        picture->draw(context, target, on.topLeft());
    else {
        picture->draw(context, target, off.topLeft());
        picture->drawAlpha(context, target, on.topLeft(), alpha);
    }
}

bool Sorel_ActionButton::isTypeOf(const char* name) const {
    return std::strcmp(name, "Sorel_ActionButton") == 0 || CControl::isTypeOf(name);
}

CSwitch::CSwitch(CPoint topLeft,
                 CControlListener* listener,
                 std::int32_t tag,
                 CBitmap* picture,
                 Vardo::IPluginParameter* parameter)
    : Sorel_ActionButton(
          CRect::ofSize(topLeft.x, topLeft.y, 34.0, 22.0), listener, tag, Mode::kToggle, picture) {
    pictureRect_ = getViewSize();
    // The pill without the room for its glow.
    setMouseableArea(getViewSize().inset(4.0, 4.0));
    setParameter(parameter);
}

void CSwitch::setCaption(const char* text, double width) {
    caption_ = text;
    const CRect whole = {pictureRect_.left, pictureRect_.top,
                         pictureRect_.right + kCaptionGap + width, pictureRect_.bottom};
    setViewSize(whole);
    setMouseableArea({whole.left + 4.0, whole.top + 3.0, whole.right, whole.bottom - 3.0});
}

void CSwitch::draw(CDrawContext& context) {
    Sorel_ActionButton::draw(context);
    if (caption_.empty()) return;
    const CColor color = Palette::kLabel.mixed(Palette::kBright, getFadeAlpha() / kFull);
    context.setFont(kDefaultFont, kCaptionSize, kRegularFont);
    context.setFontColor(getActive() ? color : color.faded(0.5));
    context.drawStringAt(caption_, {pictureRect_.right + kCaptionGap,
                                    std::round(getViewSize().top + kCaptionBaseline)});
}

} // namespace Sorel
