// What the plug-in asks of the VST3 host. Main thread.
#include "VardoVST3.h"

#include <algorithm>
#include <cmath>

namespace Vardo {

using namespace Steinberg;
using namespace Steinberg::Vst;

int Vardo_VST3::updateDisplay() {
    const FUnknownPtr<IUnitHandler> handler(componentHandler);
    if (!handler) return 0;
    handler->notifyUnitSelection(kRootUnitId);
    handler->notifyProgramListChange(kProgramList, kAllProgramInvalid);
    return 1;
}

int Vardo_VST3::ioChanged() {
    if (componentHandler == nullptr) return 0;
    constexpr int32 kWhat = kIoChanged | kLatencyChanged | kParamTitlesChanged;
    static_assert(kWhat == 26);
    return componentHandler->restartComponent(kWhat) == kResultOk ? 1 : 0;
}

int Vardo_VST3::setLatency(int samples) {
    latency_ = std::max(samples, 0);
    return 1;
}

int Vardo_VST3::beginEdit(int parameterIndex) {
    if (map_.parameter(parameterIndex) == nullptr) return 0;
    map_.setGesture(parameterIndex, true);
    return EditController::beginEdit(static_cast<ParamID>(parameterIndex)) == kResultOk ? 1 : 0;
}

int Vardo_VST3::endEdit(int parameterIndex) {
    if (map_.parameter(parameterIndex) == nullptr) return 0;
    // Still held while the host hears of it: it may answer with the value.
    const tresult result = EditController::endEdit(static_cast<ParamID>(parameterIndex));
    map_.setGesture(parameterIndex, false);
    return result == kResultOk ? 1 : 0;
}

void Vardo_VST3::automate(int parameterIndex, float value) {
    // Inside the host's own call it is an echo.
    if (map_.isHostCall(parameterIndex) || !std::isfinite(value)) return;
    VardoVST3Parameter* parameter =
        parameterIndex < 0 ? nullptr : pluginParameter(static_cast<ParamID>(parameterIndex));
    if (parameter == nullptr) return;
    parameter->markKnown();
    performEdit(static_cast<ParamID>(parameterIndex), normalizedOf(double{value}));
}

void Vardo_VST3::refreshParameters() {
    markAllKnown();
    if (componentHandler != nullptr) componentHandler->restartComponent(kParamValuesChanged);
}

void Vardo_VST3::parameterChanged(IPluginParameter* parameter) {
    const int index = parameter == nullptr ? -1 : parameter->getHostIndex();
    if (index < 0 || map_.hasGesture(index) || map_.isHostCall(index)) return;
    const VardoVST3Parameter* known = pluginParameter(static_cast<ParamID>(index));
    if (known != nullptr && known->isNewsToHost()) valuesChanged_ = true;
}

void Vardo_VST3::deliverChanges() {
    changes_.deliver(plugin_.get());
    if (changes_.isOnMainThread() && valuesChanged_.exchange(false)) refreshParameters();
}

void Vardo_VST3::markAllKnown() {
    valuesChanged_ = false;
    for (VardoVST3Parameter* parameter : pluginParameters_)
        parameter->markKnown();
}

} // namespace Vardo
