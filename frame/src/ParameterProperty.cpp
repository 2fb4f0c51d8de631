#include "frame/ParameterProperty.h"

#include "ValueText.h"
#include "frame/PluginBase.h"
#include "frame/ValueTaper.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace Vardo {

float ParameterProperty::clamp(float plain) const {
    if (std::isnan(plain)) plain = 0;
    return std::clamp(plain, std::min(min_, max_), std::max(min_, max_));
}

float ParameterProperty::plainToNormalized(double plain) {
    const double range = double{max_} - double{min_};
    if (range == 0) return 0;
    const double x = (double{clamp(static_cast<float>(plain))} - double{min_}) / range;
    return static_cast<float>(plainToTaper(x, double{skew_}));
}

float ParameterProperty::normalizedToPlain(double normalized) {
    const double n = std::isnan(normalized) ? 0 : std::clamp(normalized, 0.0, 1.0);
    const double range = double{max_} - double{min_};
    return static_cast<float>(double{min_} + range * taperToPlain(n, double{skew_}));
}

float ParameterProperty::getNormalizedValue() { return plainToNormalized(double{value_}); }

void ParameterProperty::setNormalizedValue(double value, int flags) {
    value_ = normalizedToPlain(value);
    if ((flags & kFromHost) == 0) {
        notify(nullptr);
        return;
    }
    // Maybe the audio thread: the plug-in hears now, everybody else in the next idle.
    if (!notificationsOn_) return;
    if (immediateListener_ != nullptr) immediateListener_->parameterChanged(this);
    pending_ = true;
}

void ParameterProperty::setNormalizedValue(float value) { setNormalizedValueFrom(nullptr, value); }

void ParameterProperty::setNormalizedValueFrom(ParameterChangeListener* source, float value) {
    value_ = normalizedToPlain(double{value});
    notify(source);
}

void ParameterProperty::setValueFrom(ParameterChangeListener* source, float plain) {
    value_ = clamp(plain);
    notify(source);
}

void ParameterProperty::clampToLimits() {
    const float inside = clamp(value_);
    if (inside != value_.load()) setValue(inside);
}

void ParameterProperty::setMin(float plain) {
    min_ = plain;
    clampToLimits();
}

void ParameterProperty::setMax(float plain) {
    max_ = plain;
    clampToLimits();
}

void ParameterProperty::setSkew(float skew) {
    skew_ = skew;
    notify(nullptr);
}

void ParameterProperty::setKind(int kind) {
    kind_ = kind;
    unit_.assign(unitOfKind(kind));
}

int ParameterProperty::getIntValue() {
    const float value = value_;
    return static_cast<int>(value < 0 ? value - 0.02F : value + 0.02F);
}

float ParameterProperty::getRelativeValue() {
    return max_ == min_ ? 0 : (value_ - min_) / (max_ - min_);
}

void ParameterProperty::setFromDescription(const ParameterDescription& row) {
    id_ = row.id;
    setKey(row.key);
    setName(row.name);
    setShortName(row.shortName);
    min_ = row.min;
    max_ = row.max;
    setKind(row.kind);
    skew_ = row.skew;
    automatable_ = row.automatable;
    default_ = clamp(row.defaultValue);
    setValue(row.value);
}

// ---- text

void ParameterProperty::setTextFunction(TextFunction format, ParseFunction parse) {
    textFunction_ = format;
    parseFunction_ = parse;
}

void ParameterProperty::setTextFunction(TextFunctionWithData format,
                                        ParseFunction parse,
                                        void* userData) {
    textFunctionWithData_ = format;
    parseFunction_ = parse;
    userData_ = userData;
}

void ParameterProperty::formatValue(float plain, char* text, int flags) {
    char* const end = text + std::strlen(text);
    if (textFunction_ != nullptr)
        textFunction_(plain, end, flags & kWithUnit);
    else if (textFunctionWithData_ != nullptr)
        textFunctionWithData_(plain, end, flags & kWithUnit, userData_);
    else if (textObject_ != nullptr)
        textObject_->formatValue(plain, end);
    else {
        const ValueScale scale{kind_, min_, max_, static_cast<const char*>(userData_)};
        formatValueOfKind(scale, plain, end, kMaxValueText, (flags & kShortForm) != 0);
        if ((flags & kWithUnit) != 0) std::strncat(end, unit_.c_str(), 16);
    }
}

void ParameterProperty::getDisplayText(double normalized, Core::IString& text) {
    char characters[2 * kMaxValueText] = "";
    formatValue(normalizedToPlain(normalized), characters, 0);
    text.assign(characters);
}

void ParameterProperty::getText(double normalized, Core::IString& text) {
    getDisplayText(normalized, text);
}

void ParameterProperty::setDisplayText(const Core::IString& text) {
    setValueFromText(text.c_str());
}

void ParameterProperty::setValueFromText(const char* text) {
    if (text == nullptr) return;
    float plain = value_;
    if (parseFunction_ == nullptr || !parseFunction_(text, plain, userData_)) {
        const ValueScale scale{kind_, min_, max_, static_cast<const char*>(userData_)};
        if (!parseValueOfKind(scale, text, plain)) return;
    }
    setValue(plain);
}

// ---- listeners

void ParameterProperty::addListener(ParameterChangeListener* listener, bool notifyNow) {
    if (std::find(listeners_.begin(), listeners_.end(), listener) == listeners_.end())
        listeners_.push_back(listener);
    if (notifyNow) listener->parameterChanged(this);
}

void ParameterProperty::removeListener(ParameterChangeListener* listener) {
    const auto place = std::find(listeners_.begin(), listeners_.end(), listener);
    if (place == listeners_.end()) return;
    // A walk may be under way further up the stack: keep its places valid.
    if (notifying_ > 0)
        *place = nullptr;
    else
        listeners_.erase(place);
}

void ParameterProperty::notify(ParameterChangeListener* except) {
    if (!notificationsOn_) return;
    if (immediateListener_ != nullptr && immediateListener_ != except)
        immediateListener_->parameterChanged(this);
    notifyListeners(except);
}

void ParameterProperty::notifyListeners(ParameterChangeListener* except) {
    ++notifying_;
    // From the last to the first, so that a listener added meanwhile disturbs nobody.
    for (std::size_t i = listeners_.size(); i-- > 0;)
        if (listeners_[i] != nullptr && listeners_[i] != except)
            listeners_[i]->parameterChanged(this);
    if (--notifying_ == 0) std::erase(listeners_, nullptr);
}

void ParameterProperty::deliverPending() {
    if (pending_.exchange(false)) notifyListeners(nullptr);
}

} // namespace Vardo
