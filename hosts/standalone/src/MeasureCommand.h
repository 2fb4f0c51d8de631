// The command `measure`: plays a source through the analyser and reads what it measured.
#pragma once

#include "AudioSource.h"
#include "CommandLine.h"
#include "PluginSetup.h"
#include "frame/AnalysisSnapshot.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace Standalone {

struct ParameterReading {
    std::string key;
    float value = 0; ///< plain
    bool isDefault = true;
};

/// All that a report tells.
struct Measurement {
    SourceInfo source; ///< `frames` is what was played
    int blockSize = 0; ///< samples analysed at a time, the last block apart
    std::vector<ParameterReading> parameters;
    Vardo::AnalysisSnapshot analysis;

    // Only where the active page measures it.
    std::optional<std::vector<std::int64_t>> transients; ///< frames from the start of the source
    std::optional<Vardo::SpectrumSnapshot> spectrum;
    std::optional<Vardo::ScopeTable> scope; ///< when columns were asked for
};

/// `progress` hears the number of frames played so far; it may be empty.
/// Fails: throws UserError for settings and sources that cannot be used, std::runtime_error for a
/// plug-in that does not do its part.
Measurement measure(const PluginFactory& createPlugin,
                    AudioSource& source,
                    const MeasureOptions& options,
                    const std::function<void(std::int64_t frames)>& progress);

} // namespace Standalone
