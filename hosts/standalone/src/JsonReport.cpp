// What was measured, for programs.
#include "MeasureCommand.h"
#include "Report.h"

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
    // File names need not be UTF-8; JSON must.
    return report.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

} // namespace Standalone
