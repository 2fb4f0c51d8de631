// What was measured, for people.
#include "MeasureCommand.h"
#include "Report.h"
#include "ReportText.h"
#include "SpectrumPeak.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace Standalone {
namespace {

constexpr std::array<const char*, Vardo::kNumAnalysisChannels> kNames = {"Left", "Right", "Mid",
                                                                         "Side", "Max"};
constexpr std::size_t kNameWidth = 15;
constexpr std::size_t kDecibelWidth = 9;
constexpr std::size_t kLinearWidth = 10;

std::string headOf(const Measurement& measurement) {
    const SourceInfo& source = measurement.source;
    const Vardo::AnalysisSnapshot& analysis = measurement.analysis;
    const double seconds = static_cast<double>(source.frames) / source.sampleRate;
    std::string text = source.path + "\n";
    text += padded("Recording", kNameWidth) + shortNumber(source.sampleRate) + " Hz, " +
            std::to_string(source.channels) +
            (source.channels == 1 ? " channel, " : " channels, ") + std::to_string(source.frames) +
            " frames, " + fixedNumber(seconds, 3) + " s\n";
    text += padded("Analysis", kNameWidth) + "blocks of " + std::to_string(measurement.blockSize) +
            ", " + std::to_string(analysis.slices) + " slices, page " + pageName(analysis.page) +
            (analysis.threaded ? ", own thread" : ", audio thread") + "\n";
    return text;
}

// Only what differs from a fresh plug-in, on lines of at most 100 characters.
std::string changedParametersOf(const Measurement& measurement) {
    std::string text;
    std::string line = padded("Parameters", kNameWidth);
    bool first = true;
    for (const ParameterReading& parameter : measurement.parameters) {
        if (parameter.isDefault) continue;
        const std::string item = parameter.key + "=" + shortNumber(parameter.value);
        if (!first && line.size() + item.size() > 98) {
            text += line + "\n";
            line = std::string(kNameWidth, ' ');
        } else if (!first) {
            line += "  ";
        }
        line += item;
        first = false;
    }
    return first ? "" : text + line + "\n";
}

std::string levelCells(double level) {
    return aligned(decibels(level), kDecibelWidth) + aligned(fixedNumber(level, 5), kLinearWidth);
}

std::string tableOf(const Vardo::AnalysisSnapshot& analysis) {
    const std::size_t pair = kDecibelWidth + kLinearWidth;
    std::string text = std::string(kNameWidth, ' ') + aligned("peak", pair) +
                       aligned("last peak", pair) + aligned("RMS", pair) + "\n" +
                       padded("Channel", kNameWidth);
    for (int column = 0; column < 3; ++column)
        text += aligned("dBFS", kDecibelWidth) + aligned("linear", kLinearWidth);
    text += aligned("overs", kDecibelWidth) + "\n";
    for (std::size_t c = 0; c < analysis.levels.size(); ++c) {
        const Vardo::ChannelLevels& levels = analysis.levels[c];
        text += padded(kNames[c], kNameWidth) + levelCells(static_cast<double>(levels.peakMax)) +
                levelCells(static_cast<double>(levels.peakLast)) +
                (levels.rmsFed ? levelCells(static_cast<double>(levels.rms))
                               : aligned("-", kDecibelWidth) + aligned("-", kLinearWidth)) +
                aligned(std::to_string(levels.overs), kDecibelWidth) + "\n";
    }
    return text;
}

std::string dynamicRange(float decibel) {
    // -96 stands for "none yet": silence has no dynamic range.
    return decibel > -96.0F ? fixedNumber(static_cast<double>(decibel), 1) + " dB" : "-";
}

// A line per channel would drown the table: where most samples lie tells most.
std::string histogramOf(const Vardo::AnalysisSnapshot& analysis) {
    std::string text = padded("Most samples", kNameWidth);
    for (std::size_t c = 0; c < analysis.histogram.size(); ++c) {
        const Vardo::HistogramCounts& counts = analysis.histogram[c];
        const auto highest = std::max_element(counts.begin(), counts.end());
        const auto lowEdge = static_cast<int>(highest - counts.begin()) - 96;
        text += std::string(c == 0 ? "" : ", ") + kNames[c] + " " +
                (*highest == 0 ? std::string("-oo") : std::to_string(lowEdge) + " dB");
    }
    return text + "  (last second)\n";
}

// What the active page adds.
std::string pageLinesOf(const Measurement& measurement) {
    const Vardo::AnalysisSnapshot& analysis = measurement.analysis;
    std::string text;
    if (measurement.transients) {
        const std::size_t count = measurement.transients->size();
        text += padded("Transients", kNameWidth) + std::to_string(count);
        if (count > 0)
            text += ", the first at " +
                    fixedNumber(static_cast<double>(measurement.transients->front()) /
                                    measurement.source.sampleRate,
                                3) +
                    " s";
        text += "\n";
        if (analysis.sibilanceVoice != 0)
            text += padded("Sibilance", kNameWidth) + fixedNumber(analysis.sibilanceSeconds, 2) +
                    " s, as of a " + (analysis.sibilanceVoice == 1 ? "male" : "female") +
                    " voice\n";
    }
    if (analysis.page == Vardo::AnalyserPage::stereoField)
        text += padded("Correlation", kNameWidth) +
                fixedNumber(static_cast<double>(analysis.correlation), 2) + "\n";
    if (measurement.spectrum)
        if (const std::optional<SpectrumPeak> highest = highestOf(*measurement.spectrum))
            text += padded("Spectrum", kNameWidth) + "highest of mid at the end: " +
                    fixedNumber(static_cast<double>(highest->db), 1) + " dB @ " +
                    fixedNumber(highest->hz, 1) + " Hz (" + highest->note + ")\n";
    return text;
}

} // namespace

std::string tableReport(const Measurement& measurement) {
    const Vardo::AnalysisSnapshot& analysis = measurement.analysis;
    std::string text =
        headOf(measurement) + changedParametersOf(measurement) + "\n" + tableOf(analysis) + "\n";
    text += padded("Dynamic range", kNameWidth) + "Left " +
            dynamicRange(analysis.dynamicRangeDb[0]) + ", Right " +
            dynamicRange(analysis.dynamicRangeDb[1]) + "\n";
    if (analysis.histogramEnabled) text += histogramOf(analysis);
    return text + pageLinesOf(measurement);
}

} // namespace Standalone
