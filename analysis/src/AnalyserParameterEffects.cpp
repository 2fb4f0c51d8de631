// What each parameter of the analyser does when it changes.
#include "analysis/OrvelScope.h"

#include <algorithm>

namespace Orvel {

namespace {
constexpr int kLastMeteringMode = 4;
constexpr int kLastChannelMode = 4;
constexpr int kLastSyncMode = 5;
constexpr int kLastBeatIndex = 8;
constexpr int kLongestMultiplier = 16;
constexpr int kLastFFTSize = 3;

bool isOn(double value) { return value > 0.5; }
} // namespace

void COrvelScope::parameterChanged(Vardo::IPluginParameter* parameter) {
    if (parameter != nullptr) setParameter(parameter, double{parameter->getValue()}, 0);
}

// May run on a host's automation thread: stores plain values, asks for what takes longer.
void COrvelScope::setParameter(Vardo::IPluginParameter* parameter, double value, int flags) {
    if (parameter == nullptr) return;
    const auto plain = static_cast<float>(value);
    switch (parameter->getId()) {
    case kGlobalInputGain:
        inputGain_ = plain;
        break;
    case kGlobalMeteringMode:
        meteringMode_ = indexValue(value, kLastMeteringMode);
        break;
    case kGlobalRMSLength:
        setRmsLength(plain);
        break;
    case kScopeChannelMode:
        storeTiming(timing_.channelMode, indexValue(value, kLastChannelMode));
        break;
    case kScopeSyncMode:
        storeTiming(timing_.syncMode, indexValue(value, kLastSyncMode));
        break;
    case kScopeSyncDurationBeatTime:
        storeTiming(timing_.beatIndex, indexValue(value, kLastBeatIndex));
        break;
    case kScopeSyncDurationPitch:
        storeTiming(timing_.note, plain);
        break;
    case kScopeSyncDurationFrequency:
        storeTiming(timing_.frequencyHz, plain);
        break;
    case kScopeVisibleTimeMs:
        storeTiming(timing_.timeMs, plain);
        break;
    case kScopeVisibleTimeMultiplier:
        storeTiming(timing_.multiplier, std::max(1, indexValue(value, kLongestMultiplier)));
        break;
    case kScopeFreeze:
        scopeFrozen_ = isOn(value);
        break;
    case kScopeDeEsserMale:
        showMaleEss_ = isOn(value);
        if (isOn(value)) setSwitchOff(kScopeDeEsserFemale);
        setVoice();
        break;
    case kScopeDeEsserFemale:
        showFemaleEss_ = isOn(value);
        if (isOn(value)) setSwitchOff(kScopeDeEsserMale);
        setVoice();
        break;
    case kSpectrumFFTSize:
        setSpectrum(indexValue(value, kLastFFTSize), updateSpeed_);
        break;
    case kSpectrumUpdateSpeed:
        setSpectrum(fftSizeIndex_, plain);
        break;
    case kSpectrumFreeze:
        spectrumFrozen_ = isOn(value);
        break;
    case kSpectrumProjectorFrequency:
        projectorHz_ = static_cast<float>(projectorHz(value, double{sampleRate_}));
        break;
    default:
        break; // the views read the others
    }
    if ((flags & Vardo::kFromEditor) == 0) editorRefreshWanted_ = true;
}

void COrvelScope::setVoice() {
    scope_.setVoice(showMaleEss_     ? SibilanceVoice::male
                    : showFemaleEss_ ? SibilanceVoice::female
                                     : SibilanceVoice::off);
}

/// Only a real change restarts the windows: loading a preset with the same length does not.
void COrvelScope::setRmsLength(float milliseconds) {
    const IdleAnalysis idle(lock_);
    if (milliseconds == rmsLengthMs_) return;
    rmsLengthMs_ = milliseconds;
    metering_.setRmsLength(milliseconds);
}

void COrvelScope::setSpectrum(int sizeIndex, float updateSpeed) {
    if (sizeIndex == fftSizeIndex_ && updateSpeed == updateSpeed_.load()) return;
    // Another size is made ready outside the lock, so that an exchange never waits for that.
    std::unique_ptr<SpectrumAnalyser> other;
    if (sizeIndex != fftSizeIndex_) {
        other = std::make_unique<SpectrumAnalyser>();
        other->configure(sampleRate_, sizeIndex, updateSpeed);
    }
    const IdleAnalysis idle(lock_);
    fftSizeIndex_ = sizeIndex;
    updateSpeed_ = updateSpeed;
    if (other != nullptr) std::swap(spectrum_, other);
    dimensionSpectrum();
}

/// A new timing ends a freeze, so that the user sees what it does.
template <typename Value>
void COrvelScope::storeTiming(Core::Relaxed<Value>& field, Value value) {
    if (field.load() == value) return;
    field = value;
    if (scopeFrozen_ && !loadingState_) setSwitchOff(kScopeFreeze);
}

void COrvelScope::setSwitchOff(ParameterId id) {
    Vardo::IPluginParameter& other = parameter(id);
    if (!other.getBoolValue()) return;
    // As if a host had done it: we may be on its automation thread.
    other.setNormalizedValue(0.0, Vardo::kFromHost);
    editorRefreshWanted_ = true;
    hostRefreshWanted_ = true;
}

} // namespace Orvel
