#include "analysis/AnalyserParameters.h"

#include "ParameterTexts.h"
#include "core/NumberText.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>

namespace Orvel {

namespace {

using namespace Vardo; // the value kinds

// key, name, short name, min, max, value, default, automatable, skew, kind, id
// clang-format off
constexpr ParameterDescription kTable[kNumParameters] = {
    {"GlobalInputGain", "Input Gain", "InputGain", 0, 1, 1, 1, true, 13.5F, kGainInDecibels, kGlobalInputGain},
    {"GlobalMeteringMode", "Metering Mode", "MeteringMode", 0, 4, 0, 0, false, 0, kInteger, kGlobalMeteringMode},
    {"GlobalRMSLength", "RMS Analysis Length", "RMSAnalysisLength", 10, 1000, 500, 500, false, 0, kMilliseconds, kGlobalRMSLength},
    {"GlobalColorScheme", "Color Scheme", "ColorScheme", 0, 0, 0, 0, false, 0, kInteger, kGlobalColorScheme}, // one scheme so far
    {"ScopeChannelMode", "Channel Mode", "ChannelMode", 0, 4, 0, 0, false, 0, kInteger, kScopeChannelMode},
    {"ScopeSyncMode", "Sync Mode", "SyncMode", 0, 5, 0, 0, false, 0, kInteger, kScopeSyncMode},
    {"ScopeSyncDuration_BeatTime", "Sync Duration", "SyncDuration", 0, 8, 3, 3, false, 0, kInteger, kScopeSyncDurationBeatTime},
    {"ScopeSyncDuration_Pitch", "Sync Duration", "SyncDuration", 0, 110, 60, 60, false, 0, kNote, kScopeSyncDurationPitch},
    {"ScopeSyncDuration_Frequency", "Sync Duration", "SyncDuration", 1, 100, 50, 50, false, 0, kHertz, kScopeSyncDurationFrequency},
    {"ScopeVisibleTime_ms", "Visible Time", "VisibleTime", 10, 30000, 5000, 5000, false, 0, kOwnText, kScopeVisibleTimeMs},
    {"ScopeVisibleTime_Multiplier", "Visible Time", "VisibleTime", 1, 16, 4, 4, false, 0, kInteger, kScopeVisibleTimeMultiplier},
    {"ScopeFreeze", "Freeze Scope", "FreezeScope", 0, 1, 0, 0, true, 0, kSwitch, kScopeFreeze},
    {"ScopeTransientDetection", "Show Transients", "ShowTransients", 0, 1, 0, 0, true, 0, kSwitch, kScopeTransientDetection},
    {"ScopeDeEsserMale", "Show Male 'Ess' Sections", "ShowMaleEssSections", 0, 1, 0, 0, true, 0, kSwitch, kScopeDeEsserMale},
    {"ScopeDeEsserFemale", "Show Female 'Ess' Sections", "ShowFemaleEssSections", 0, 1, 0, 0, true, 0, kSwitch, kScopeDeEsserFemale},
    {"SpectrumFFTSize", "FFT Size", "FFTSize", 0, 3, 3, 3, false, 0, kInteger, kSpectrumFFTSize},
    {"SpectrumUpdateSpeed", "Update Speed", "UpdateSpeed", 1, 16, 16, 16, false, 0, kOwnText, kSpectrumUpdateSpeed},
    {"SpectrumFreeze", "Freeze Spectrum", "FreezeSpectrum", 0, 1, 0, 0, true, 0, kSwitch, kSpectrumFreeze},
    {"SpectrumLinearFrequencyScale", "Linear Frequency Scale", "LinearFrequencyScale", 0, 1, 0, 0, false, 0, kSwitch, kSpectrumLinearFrequencyScale},
    {"SpectrumDrawLine", "Draw Spectrum As Line", "DrawSpectrumAsLine", 0, 1, 1, 1, false, 0, kSwitch, kSpectrumDrawLine},
    {"SpectrumDrawWaterfall", "Draw Waterfall Spectrum", "DrawWaterfallSpectrum", 0, 1, 0, 0, false, 0, kSwitch, kSpectrumDrawWaterfall},
    {"SpectrumRotate", "Rotate", "Rotate", 0, 1, 0.65F, 0.65F, true, 0, kPercentOfRange, kSpectrumRotate},
    {"SpectrumNumBands", "Num Bands", "NumBands", 0, 4, 3, 3, false, 0, kInteger, kSpectrumNumBands},
    {"SpectrumProjectorFrequency", "Projector Frequency", "ProjectorFrequency", 0, 1, 0, 0, true, 28, kOwnText, kSpectrumProjectorFrequency},
    {"SpectrumPeakReset", "Peak Reset", "PeakReset", 0, 48, 12, 12, true, 2, kOwnText, kSpectrumPeakReset},
    {"SpectrumAnalyzeMode", "Analyze Mode", "AnalyzeMode", 0, 1, 0, 0, false, 0, kInteger, kSpectrumAnalyzeMode},
};
// clang-format on

constexpr const char* kMeteringModes[] = {"Peak", "Histogram", "K12", "K14", "K20"};
constexpr const char* kChannelModes[] = {"Left & Right", "Left Only", "Right Only", "Mono Mix",
                                         "Max"};
constexpr const char* kSyncModes[] = {"Free",  "Transient", "Beat Time",
                                      "Pitch", "Frequency", "Time"};
constexpr const char* kFFTSizes[] = {"Low", "Mid", "High", "Ultra"};
constexpr const char* kBandNumbers[] = {"8", "16", "32", "64", "128"};
constexpr const char* kAnalyzeModes[] = {"Magnitude", "Energy"};

template <int count>
std::unique_ptr<ParameterProperty> makeIndexed(const char* const (&texts)[count]) {
    return std::make_unique<COrvelScope_IndexedParameter>(texts, count);
}

/// A parameter of the class and with the texts that belong to that number.
std::unique_ptr<ParameterProperty> makeParameter(int id, const Core::Relaxed<float>& sampleRate) {
    switch (id) {
    case kGlobalMeteringMode:
        return makeIndexed(kMeteringModes);
    case kScopeChannelMode:
        return makeIndexed(kChannelModes);
    case kScopeSyncMode:
        return makeIndexed(kSyncModes);
    case kSpectrumFFTSize:
        return makeIndexed(kFFTSizes);
    case kSpectrumNumBands:
        return makeIndexed(kBandNumbers);
    case kSpectrumAnalyzeMode:
        return makeIndexed(kAnalyzeModes);
    case kSpectrumProjectorFrequency:
        return std::make_unique<COrvelScope_SampleRateDependedFrequencyParameter>(sampleRate);
    default:
        break;
    }
    auto parameter = std::make_unique<ParameterProperty>();
    switch (id) {
    case kGlobalRMSLength:
        parameter->setTextFunction(nullptr, parseTime);
        break;
    case kScopeSyncDurationBeatTime:
        parameter->setTextFunction(formatBeatTime, parseBeatTime);
        break;
    case kScopeVisibleTimeMs:
        parameter->setTextFunction(formatTime, parseTime);
        break;
    case kScopeVisibleTimeMultiplier:
        parameter->setTextFunction(formatMultiplier, parseMultiplier);
        break;
    case kSpectrumUpdateSpeed:
        parameter->setTextFunction(formatSpeed, parseMultiplier);
        break;
    case kSpectrumPeakReset:
        parameter->setTextFunction(formatPeakReset, parsePeakReset);
        break;
    default:
        break;
    }
    return parameter;
}

} // namespace

int indexValue(double plain, int highest) {
    return static_cast<int>(std::clamp(plain + 0.02, 0.0, double(highest)));
}

double projectorHz(double position, double sampleRate) {
    return position * (sampleRate * 0.5 - double{kLowestProjectorHz}) + double{kLowestProjectorHz};
}

double projectorPosition(double hz, double sampleRate) {
    const double lowest{kLowestProjectorHz};
    const double highest = sampleRate * 0.5;
    return (std::clamp(hz, lowest, highest) - lowest) / (highest - lowest);
}

void COrvelScope_IndexedParameter::formatValue(float plain, char* text, int /*flags*/) {
    Core::TextWriter(text + std::strlen(text), kMaxValueText)
        .text(texts_[indexValue(double{plain}, count_ - 1)]);
}

void COrvelScope_IndexedParameter::setValueFromText(const char* text) {
    if (text == nullptr) return;
    int index = getIntValue();
    for (int i = count_; i-- > 0;)
        if (std::strcmp(texts_[i], text) == 0) index = i;
    setValue(static_cast<float>(index));
}

void COrvelScope_SampleRateDependedFrequencyParameter::formatValue(float plain,
                                                                   char* text,
                                                                   int /*flags*/) {
    Core::TextWriter(text + std::strlen(text), kMaxValueText)
        .fixed(projectorHz(double{plain}, double{sampleRate_}), 1)
        .text("Hz");
}

void COrvelScope_SampleRateDependedFrequencyParameter::setValueFromText(const char* text) {
    if (text == nullptr) return;
    setValue(static_cast<float>(projectorPosition(parseHertz(text), double{sampleRate_})));
}

ParameterTable createParameters(CPropertyManager& properties,
                                const Core::Relaxed<float>& sampleRate) {
    ParameterTable table{};
    for (const ParameterDescription& row : kTable) {
        auto parameter = makeParameter(row.id, sampleRate);
        parameter->setFromDescription(row);
        table[static_cast<std::size_t>(row.id)] = properties.addParameter(std::move(parameter));
    }
    return table;
}

} // namespace Orvel
