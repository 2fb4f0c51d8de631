// What the plug-in asks of the VST2 host. Main thread.
#include "VardoVST.h"

#include <algorithm>
#include <cmath>

namespace Vardo {

namespace {
constexpr int kMostPairs = 64;
}

void VardoVST::hostIdle() { masterIdle(); }

int VardoVST::getHostVendorString(char* text) {
    return AudioEffectX::getHostVendorString(text) ? 1 : 0;
}

int VardoVST::getHostProductString(char* text) {
    return AudioEffectX::getHostProductString(text) ? 1 : 0;
}

int VardoVST::getHostVersion() { return getHostVendorVersion(); }

int VardoVST::updateDisplay() { return AudioEffectX::updateDisplay() ? 1 : 0; }

int VardoVST::ioChanged() { return AudioEffectX::ioChanged() ? 1 : 0; }

int VardoVST::setNumInputPairs(int pairs) {
    inputPairs_ = std::clamp(pairs, 0, kMostPairs);
    pairsChanged_ = true;
    setNumInputs(2 * inputPairs_);
    return ioChanged();
}

int VardoVST::setNumOutputPairs(int pairs) {
    outputPairs_ = std::clamp(pairs, 0, kMostPairs);
    pairsChanged_ = true;
    setNumOutputs(2 * outputPairs_);
    return ioChanged();
}

int VardoVST::setLatency(int samples) {
    setInitialDelay(std::max(samples, 0));
    return ioChanged();
}

int VardoVST::beginEdit(int parameterIndex) {
    parameters_.setGesture(parameterIndex, true);
    if (parameters_.parameter(parameterIndex) != nullptr) AudioEffectX::beginEdit(parameterIndex);
    return 1;
}

int VardoVST::endEdit(int parameterIndex) {
    if (parameters_.parameter(parameterIndex) != nullptr) AudioEffectX::endEdit(parameterIndex);
    parameters_.setGesture(parameterIndex, false);
    return 1;
}

void VardoVST::automate(int parameterIndex, float value) {
    // Outside a gesture the plug-in changed it by itself; inside the host's own call it is an echo.
    if (!parameters_.hasGesture(parameterIndex) || parameters_.isHostCall(parameterIndex)) return;
    if (std::isfinite(value)) tellAutomation(parameterIndex, value);
}

float VardoVST::getTempo() {
    return static_cast<float>(transport_.tempoOf(getTimeInfo(vst2::kVstTempoValid)));
}

int VardoVST::getInterfaceKind() { return static_cast<int>(InterfaceKind::vst2); }

void VardoVST::refreshParameters() {
    updateDisplay();
    ioChanged();
}

} // namespace Vardo
