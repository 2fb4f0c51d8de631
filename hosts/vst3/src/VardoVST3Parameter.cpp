// Values and texts of a parameter.
#include "VardoVST3Parameter.h"

#include "Text16.h"
#include "core/Strings.h"
#include "frame/PluginBase.h"

#include <cmath>

namespace Vardo {

using namespace Steinberg;
using namespace Steinberg::Vst;

namespace {
// Far below a step that anyone sees, far above what a value loses on its way through its scale.
constexpr float kSameValue = 1e-4F;
} // namespace

ParamValue normalizedOf(ParamValue value) noexcept {
    if (!(value > 0)) return 0;
    return value < 1 ? value : 1;
}

VardoVST3Parameter::VardoVST3Parameter(IPluginParameter& parameter,
                                       ParamID id,
                                       ParameterMap& map,
                                       Role role)
    : parameter_(parameter)
    , map_(map) {
    copyText16(info.title, parameter.getNameText());
    copyText16(info.shortTitle, parameter.getNameText());
    copyText16(info.units, parameter.getUnitText());
    info.id = id;
    info.unitId = kRootUnitId;
    info.stepCount = role.stepCount;
    info.flags = parameter.isAutomatable() ? ParameterInfo::kCanAutomate : 0;
    if (role.isProgramChange) info.flags = ParameterInfo::kIsList | ParameterInfo::kIsProgramChange;
    if (role.isBypass) info.flags |= ParameterInfo::kIsBypass;
    info.defaultNormalizedValue =
        role.isProgramChange || role.isBypass ? 0 : double{parameter.getDefaultNormalizedValue()};
    markKnown();
}

ParamValue VardoVST3Parameter::value() const { return double{parameter_.getNormalizedValue()}; }

bool VardoVST3Parameter::setNormalized(ParamValue value) { return setFromHost(value); }

bool VardoVST3Parameter::setFromHost(ParamValue value) noexcept {
    if (map_.hasGesture(index())) return false;
    value = normalizedOf(value);
    known_ = static_cast<float>(value);
    if (parameter_.getNormalizedValue() == static_cast<float>(value)) return false;
    const ParameterMap::HostCall mark(map_, index());
    parameter_.setNormalizedValue(value, kFromHost);
    return true;
}

bool VardoVST3Parameter::isNewsToHost() const {
    return std::abs(known_ - parameter_.getNormalizedValue()) > kSameValue;
}

void VardoVST3Parameter::toString(ParamValue value, String128 text) const {
    Core::CStringBufferd<128> display;
    parameter_.getDisplayText(normalizedOf(value), display);
    copyText16(text, display.c_str());
}

bool VardoVST3Parameter::fromString(const TChar* text, ParamValue& value) const {
    if (text == nullptr) return false;
    // Only the parameter itself can read its texts, and only by taking the value. So it takes it
    // with nobody told, and takes back what it had.
    const float before = parameter_.getNormalizedValue();
    parameter_.setNotificationsOn(false);
    parameter_.setDisplayText(Core::CStringBufferd<128>(toUtf8(text).c_str()));
    const float read = parameter_.getNormalizedValue();
    parameter_.setNormalizedValue(double{before}, kFromHost);
    parameter_.setNotificationsOn(true);
    value = double{read};
    return true;
}

ParamValue VardoVST3Parameter::toPlain(ParamValue value) const {
    return double{parameter_.normalizedToPlain(normalizedOf(value))};
}

ParamValue VardoVST3Parameter::toNormalized(ParamValue plain) const {
    return normalizedOf(double{parameter_.plainToNormalized(std::isfinite(plain) ? plain : 0.0)});
}

} // namespace Vardo
