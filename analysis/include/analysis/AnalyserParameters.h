// The analyser's 26 parameters: their table, their texts, their numbers.
#pragma once

#include "core/Relaxed.h"
#include "frame/ParameterProperty.h"
#include "frame/PropertyManager.h"

#include <array>

namespace Orvel {

/// Numbers of the parameters; also their order in the property manager and in the state chunk.
enum ParameterId : int {
    kGlobalInputGain = 0,
    kGlobalMeteringMode,
    kGlobalRMSLength,
    kGlobalColorScheme,
    kScopeChannelMode,
    kScopeSyncMode,
    kScopeSyncDurationBeatTime,
    kScopeSyncDurationPitch,
    kScopeSyncDurationFrequency,
    kScopeVisibleTimeMs,
    kScopeVisibleTimeMultiplier,
    kScopeFreeze,
    kScopeTransientDetection,
    kScopeDeEsserMale,
    kScopeDeEsserFemale,
    kSpectrumFFTSize,
    kSpectrumUpdateSpeed,
    kSpectrumFreeze,
    kSpectrumLinearFrequencyScale,
    kSpectrumDrawLine,
    kSpectrumDrawWaterfall,
    kSpectrumRotate,
    kSpectrumNumBands,
    kSpectrumProjectorFrequency,
    kSpectrumPeakReset,
    kSpectrumAnalyzeMode,
    kNumParameters,
};

/// The plain value of an integer parameter as the analyser reads it, within 0..highest.
int indexValue(double plain, int highest);

/// The projector parameter is a position between 20 Hz and half the sample rate.
inline constexpr float kLowestProjectorHz = 20.0F;
double projectorHz(double position, double sampleRate);
double projectorPosition(double hz, double sampleRate);

/// A choice from a list of texts.
class COrvelScope_IndexedParameter final : public Vardo::ParameterProperty {
  public:
    COrvelScope_IndexedParameter(const char* const* texts, int count)
        : texts_(texts)
        , count_(count) {}

    void formatValue(float plain, char* text, int flags) override;
    /// Takes the index of the text, upper and lower case being different; any other text leaves the
    /// choice as it is.
    void setValueFromText(const char* text) override;

  private:
    const char* const* texts_;
    int count_;
};

/// A position between 20 Hz and half the sample rate of the moment, shown in hertz.
class COrvelScope_SampleRateDependedFrequencyParameter final : public Vardo::ParameterProperty {
  public:
    /// `sampleRate` in Hz outlives the parameter.
    explicit COrvelScope_SampleRateDependedFrequencyParameter(
        const Core::Relaxed<float>& sampleRate)
        : sampleRate_(sampleRate) {}

    void formatValue(float plain, char* text, int flags) override;
    void setValueFromText(const char* text) override;

  private:
    const Core::Relaxed<float>& sampleRate_;
};

using ParameterTable = std::array<Vardo::IPluginParameter*, kNumParameters>;

/// Makes all parameters in `properties`, which owns them, each at its default. No listener is told.
ParameterTable createParameters(Vardo::CPropertyManager& properties,
                                const Core::Relaxed<float>& sampleRate);

} // namespace Orvel
