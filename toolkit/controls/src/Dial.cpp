#include "controls/Dial.h"

#include "controls/Palette.h"
#include "core/NumberText.h"
#include "tree/SorelineEditor.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numbers>
#include <string>
#include <utility>

namespace Sorel {

namespace {
constexpr double kWidth = 72.0;
constexpr double kHeight = 76.0;
constexpr double kDescenders = 2.0; // of the label, below the cell
constexpr CRect kValueBox{8.0, 57.0, 65.0, 68.0};
constexpr double kTextCentre = 36.0;
constexpr double kValueBaseline = 66.0;
constexpr double kLabelBaseline = 75.0;
constexpr double kValueSize = 10.0;
constexpr double kLabelSize = 9.0;
constexpr double kInactiveValue = 0.4; // of the alpha
constexpr double kInactiveLabel = 0.5;
constexpr CColor kInactivePointer{120, 120, 140, 255};
constexpr CColor kFace{62, 62, 74, 255}; // of the knob, in the middle of its shading
constexpr double kHitRadius = 28.0;      // the ring with a little margin; the texts are no knob
constexpr int kFrames = 65;
constexpr int kSmallFrames = 128;

/// Gives the parameter the value of a typed text. False, and nothing is changed, when it means
/// nothing: parameters read any text as a number, and nonsense as 0. Without a digit it must be
/// what the new value is called, as "Hold" is.
bool readText(Vardo::IPluginParameter& parameter, const std::string& text) {
    const float before = parameter.getValue();
    parameter.setNotificationsOn(false); // all hear of it with the edit
    parameter.setValueFromText(text.c_str());
    const std::string called = valueText(parameter).substr(0, text.size());
    const bool means = text.find_first_of("0123456789") != std::string::npos ||
                       Core::equalsIgnoringCase(called.c_str(), text.c_str());
    if (!means) parameter.setValue(before);
    parameter.setNotificationsOn(true);
    return means;
}

double angleOf(double value) { return (-135.0 + 270.0 * value) * std::numbers::pi / 180.0; }
} // namespace

CDial::CDial(CPoint topLeft,
             CControlListener* listener,
             std::int32_t tag,
             const char* label,
             const Pictures& pictures,
             Vardo::IPluginParameter* parameter)
    : Sorel_AnimKnob(CRect::ofSize(topLeft.x, topLeft.y, kWidth, kHeight + kDescenders),
                     listener,
                     tag,
                     kFrames,
                     0,
                     nullptr)
    , label_(label)
    , fontColor_(Palette::kValue)
    , pointer_{{36.5, 36.5}, 8.0, 15.6, 2.0} {
    setKnobRadius(kHitRadius);
    setBackgroundPicture(pictures.background, CRect::ofSize(0.0, 0.0, kWidth, kHeight));
    addLayer(pictures.ring, kFrames, 55, CRect::ofSize(6.0, 5.0, 60.0, 55.0), true);
    addLayer(pictures.knob, kFrames, 43, CRect::ofSize(15.0, 15.0, 43.0, 43.0), false);
    setParameter(parameter);
    Sorel_AnimKnob::startAnimation(false);
    startTimer(kTimerMs);
}

CDial::~CDial() {
    stopTimer();
    if (typing_) typing_->setListener(nullptr);
}

void CDial::setBackgroundPicture(CBitmap* picture, const CRect& rect) {
    backgroundPicture_ = Counted<CBitmap>(picture);
    backgroundRect_ = rect;
}

void CDial::addLayer(
    CBitmap* picture, int frameCount, int frameHeight, const CRect& rect, bool darkWhenInactive) {
    if (picture == nullptr || layerCount_ >= kMaxLayers) return;
    Layer& layer = layers_[static_cast<std::size_t>(layerCount_++)];
    layer.picture = Counted<CBitmap>(picture);
    layer.offscreen = nullptr;
    layer.frameCount = frameCount;
    layer.frameHeight = frameHeight;
    layer.rect = rect;
    layer.darkWhenInactive = darkWhenInactive;
}

void CDial::setLabel(const char* text) {
    label_.assign(text);
    setDirty(true);
}

void CDial::setFontColor(CColor color) {
    fontColor_ = color;
    setDirty(true);
}

void CDial::setHasValueText(bool on) {
    hasValueText_ = on;
    setDirty(true);
}

void CDial::setSteppedByParameter(bool on) {
    if (!on || getParameter() == nullptr) {
        setStepped(false);
        return;
    }
    const double range = double{getParameter()->getMax()} - double{getParameter()->getMin()};
    setStepped(true, static_cast<std::int32_t>(std::lround(range)) + 1);
}

void CDial::setParameter(Vardo::IPluginParameter* parameter) {
    if (parameter != getParameter()) giveUpTyping();
    Sorel_AnimKnob::setParameter(parameter);
    startAnimation(true);
}

void CDial::setActive(bool state) {
    if (!state) giveUpTyping();
    Sorel_AnimKnob::setActive(state);
}

void CDial::onParameterChanged(int parameterIndex) {
    Sorel_AnimKnob::onParameterChanged(parameterIndex);
    startAnimation(true);
}

void CDial::startAnimation(bool smooth) {
    moving_ = smooth;
    Sorel_AnimKnob::startAnimation(smooth);
}

void CDial::onTimer(std::int64_t /*elapsedMilliseconds*/) {
    if (!moving_) return;
    moving_ = stepAnimation();
    setDirty(true);
}

CRect CDial::valueBox() const { return kValueBox.moved(getViewSize().topLeft()); }

int CDial::onMouseDown(CPoint where, std::int32_t* buttons) {
    // The texts lie below the knob and belong to the value.
    if (hasValueText_ && (*buttons & Buttons::kLeft) != 0 && valueBox().contains(where)) {
        openTyping();
        return kMouseHandledDone;
    }
    return Sorel_AnimKnob::onMouseDown(where, buttons);
}

bool CDial::hitTest(CPoint where, std::int32_t buttons) const {
    return Sorel_AnimKnob::hitTest(where, buttons) ||
           (hasValueText_ && getMouseableArea().contains(where) && valueBox().contains(where));
}

void CDial::openTyping() {
    if (typing_ || getParameter() == nullptr || getParentView() == nullptr || !getActive()) return;
    typing_ = Counted<CDialTextEdit>::make(valueBox(), this, *getParameter());
    typing_->retain(); // the parent's
    if (!getParentView()->addView(typing_.get())) {
        typing_->release();
        typing_ = nullptr;
        return;
    }
    getFrame()->setFocusView(typing_.get());
    setDirty(true);
}

void CDial::giveUpTyping() {
    if (typing_) typing_->finishEditing(false);
}

void CDial::valueChanged(CControl* control) {
    if (!typing_ || control != typing_.get()) return;
    const Counted<CDialTextEdit> box = std::exchange(typing_, nullptr);
    // An emptied box asks for nothing, nor does one that was only looked at.
    const bool asks = box->wasCommitted() && box->wasChanged() && box->getText()[0] != 0;
    if (asks && getParameter() != nullptr && readText(*getParameter(), box->getText())) {
        CControl::beginEdit();
        readParameter();
        notifyParameter();
        reportValue();
        CControl::endEdit();
        startAnimation(true);
    }
    if (CViewContainer* parent = box->getParentView())
        if (parent->isChild(box.get())) parent->removeView(box.get(), true);
    setDirty(true);
}

int CDial::removed(CViewContainer* parent) {
    if (typing_) {
        typing_->setListener(nullptr);
        typing_ = nullptr;
    }
    return Sorel_AnimKnob::removed(parent);
}

void CDial::drawLayer(CDrawContext& context, Layer& layer, double value) const {
    if (!layer.offscreen)
        layer.offscreen = Counted<CBitmap>::make(static_cast<int>(layer.rect.width()),
                                                 static_cast<int>(layer.rect.height()));
    const int last = layer.frameCount - 1;
    const double position = last * std::clamp(value, 0.0, 1.0);
    const int frame = std::clamp(static_cast<int>(position), 0, last);
    const int alpha = static_cast<int>((position - frame) * 255.0);
    const CRect whole = CRect::ofSize(0.0, 0.0, layer.rect.width(), layer.rect.height());
    const CRect target = layer.rect.moved(getViewSize().topLeft());
    const CPoint source{0.0, static_cast<double>(frame * layer.frameHeight)};
    if (alpha == 0) {
        layer.picture->draw(context, target, source);
        return;
    }
    CDrawContext& picture = layer.offscreen->context();
    picture.clear();
    picture.setDrawMode(kAddMode);
    layer.picture->drawAlpha(picture, whole, source, 255 - alpha);
    if (frame < last)
        layer.picture->drawAlpha(picture, whole, source + CPoint{0.0, double(layer.frameHeight)},
                                 alpha);
    layer.offscreen->draw(context, target);
}

void CDial::drawDimmedPointer(CDrawContext& context) const {
    const CPoint centre = getViewSize().topLeft() + pointer_.centre;
    const double angle = angleOf(getAnimatedValue());
    const CPoint direction{std::sin(angle), -std::cos(angle)};
    const auto stroke = [&](CColor color, double width) {
        context.setFrameColor(color);
        context.setLineWidth(width);
        context.drawLine(
            centre.x + direction.x * pointer_.inner, centre.y + direction.y * pointer_.inner,
            centre.x + direction.x * pointer_.outer, centre.y + direction.y * pointer_.outer);
    };
    stroke(kFace, pointer_.width + 2.0); // away with the bright one
    stroke(kInactivePointer, pointer_.width);
    context.setLineWidth(1.0);
}

void CDial::drawTexts(CDrawContext& context) const {
    const CPoint origin = getViewSize().topLeft();
    const bool active = getActive();
    context.setFont(kDefaultFont, kLabelSize, kRegularFont);
    context.setFontColor(active ? Palette::kLabel : Palette::kLabel.faded(kInactiveLabel));
    context.drawStringAt(label_.c_str(), origin + CPoint{kTextCentre, kLabelBaseline},
                         HorizontalAlign::kCentre);
    if (!hasValueText_ || typing_ || getParameter() == nullptr) return;
    const std::string text = valueText(*getParameter());
    context.setFont(kDefaultFont, kValueSize, kRegularFont);
    context.setFontColor(active ? fontColor_ : fontColor_.faded(kInactiveValue));
    context.drawStringAt(text, origin + CPoint{kTextCentre, kValueBaseline},
                         HorizontalAlign::kCentre);
}

void CDial::draw(CDrawContext& context) {
    setDirty(false);
    if (backgroundPicture_)
        backgroundPicture_->draw(context, backgroundRect_.moved(getViewSize().topLeft()));
    for (int i = 0; i < layerCount_; ++i) {
        Layer& layer = layers_[static_cast<std::size_t>(i)];
        const bool dark = layer.darkWhenInactive && !getActive();
        drawLayer(context, layer, dark ? 0.0 : getAnimatedValue());
    }
    if (!getActive()) drawDimmedPointer(context);
    drawTexts(context);
}

bool CDial::isTypeOf(const char* name) const {
    return std::strcmp(name, "CDial") == 0 || Sorel_AnimKnob::isTypeOf(name);
}

CSmallDial::CSmallDial(CPoint topLeft,
                       CControlListener* listener,
                       std::int32_t tag,
                       const char* label,
                       const SmallPictures& pictures,
                       Vardo::IPluginParameter* parameter)
    : CDial(topLeft, listener, tag, label, {}, parameter) {
    setBackgroundPicture(pictures.background, CRect::ofSize(16.0, 16.0, 41.0, 41.0));
    addLayer(pictures.knob, kSmallFrames, 21, CRect::ofSize(26.0, 26.0, 21.0, 21.0), false);
    setPointerShape({{36.5, 36.5}, 3.0, 7.6, 1.8});
}

bool CSmallDial::isTypeOf(const char* name) const {
    return std::strcmp(name, "CSmallDial") == 0 || CDial::isTypeOf(name);
}

} // namespace Sorel
