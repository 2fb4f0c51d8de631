// What was measured, for programs.
#include "MeasureCommand.h"
#include "Report.h"
#include "SpectrumPeak.h"

#include <nlohmann/json.hpp>

#include <array>

namespace Standalone {
namespace {

using Json = nlohmann::ordered_json;

Json number(float value) { return static_cast<double>(value); }

Json engineOf(const Measurement& measurement) {
    Json parameters = Json::object();
    for (const ParameterReading& parameter : measurement.parameters)
        parameters[parameter.key] = number(parameter.value);
    return {{"block_size", measurement.blockSize},
            {"threaded", measurement.analysis.threaded},
            {"page", pageName(measurement.analysis.page)},
            {"slices", measurement.analysis.slices},
            {"parameters", parameters}};
}

Json levelsOf(const Vardo::ChannelLevels& levels) {
    return {{"peak_last", number(levels.peakLast)},
            {"peak_max", number(levels.peakMax)},
            {"overs", levels.overs},
            {"rms", levels.rmsFed ? number(levels.rms) : Json(nullptr)}};
}

Json histogramOf(const Vardo::AnalysisSnapshot& analysis) {
    if (!analysis.histogramEnabled) return nullptr;
    Json histogram = Json::object();
    for (int c = 0; c < Vardo::kNumAnalysisChannels; ++c)
        histogram[channelKey(c)] = analysis.histogram[static_cast<std::size_t>(c)];
    return histogram;
}

Json transientsOf(const Measurement& measurement) {
    return measurement.transients ? Json(*measurement.transients) : Json(nullptr);
}

Json sibilanceOf(const Vardo::AnalysisSnapshot& analysis) {
    if (analysis.page != Vardo::AnalyserPage::scope || analysis.sibilanceVoice == 0) return nullptr;
    return {{analysis.sibilanceVoice == 1 ? "male" : "female", analysis.sibilanceSeconds}};
}

Json correlationOf(const Vardo::AnalysisSnapshot& analysis) {
    if (analysis.page != Vardo::AnalyserPage::stereoField) return nullptr;
    return number(analysis.correlation);
}

Json spectrumOf(const Measurement& measurement) {
    if (!measurement.spectrum) return nullptr;
    const Vardo::SpectrumSnapshot& spectrum = *measurement.spectrum;
    const std::optional<SpectrumPeak> highest = highestOf(spectrum);
    return {{"fft_size", spectrum.fftSize},
            {"bin_hz", spectrum.binHz},
            {"frames", spectrum.frames},
            {"mid", spectrum.midDb},
            {"side", spectrum.sideDb},
            {"highest_db", highest ? Json(number(highest->db)) : Json(nullptr)},
            {"highest_hz", highest ? Json(highest->hz) : Json(nullptr)},
            {"note", highest ? Json(highest->note) : Json(nullptr)}};
}

Json scopeOf(const Measurement& measurement) {
    if (!measurement.scope) return nullptr;
    Json layers = Json::array();
    for (const std::vector<Vardo::ScopeRange>& layer : *measurement.scope) {
        Json columns = Json::array();
        for (const Vardo::ScopeRange& column : layer)
            columns.push_back({number(column.lowest), number(column.highest)});
        layers.push_back(std::move(columns));
    }
    return {{"columns", measurement.scope->front().size()}, {"layers", std::move(layers)}};
}

} // namespace

const char* channelKey(int channel) {
    constexpr std::array<const char*, Vardo::kNumAnalysisChannels> keys = {"left", "right", "mid",
                                                                           "side", "max"};
    return keys.at(static_cast<std::size_t>(channel));
}

std::string jsonReport(const Measurement& measurement) {
    const SourceInfo& source = measurement.source;
    const Vardo::AnalysisSnapshot& analysis = measurement.analysis;
    Json report;
    report["file"] = {{"path", source.path},
                      {"sample_rate", static_cast<std::int64_t>(source.sampleRate)},
                      {"channels", source.channels},
                      {"frames", source.frames},
                      {"seconds", static_cast<double>(source.frames) / source.sampleRate}};
    report["engine"] = engineOf(measurement);
    Json levels = Json::object();
    for (int c = 0; c < Vardo::kNumAnalysisChannels; ++c)
        levels[channelKey(c)] = levelsOf(analysis.levels[static_cast<std::size_t>(c)]);
    report["levels"] = levels;
    report["dynamic_range"] = {{"left", number(analysis.dynamicRangeDb[0])},
                               {"right", number(analysis.dynamicRangeDb[1])}};
    report["histogram"] = histogramOf(analysis);
    report["transients"] = transientsOf(measurement);
    report["sibilance"] = sibilanceOf(analysis);
    report["correlation"] = correlationOf(analysis);
    report["spectrum"] = spectrumOf(measurement);
    report["scope"] = scopeOf(measurement);
    // File names need not be UTF-8; JSON must.
    return report.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

} // namespace Standalone
