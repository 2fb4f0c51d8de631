// The loudest frequency of a spectrum.
#pragma once

#include "frame/AnalysisSnapshot.h"

#include <optional>
#include <string>

namespace Standalone {

struct SpectrumPeak {
    float db = 0;
    double hz = 0;
    std::string note; ///< nearest semitone, "A3" for 440 Hz
};

/// Of mid, from 20 Hz to half the sample rate. Nothing when no spectrum is finished yet.
std::optional<SpectrumPeak> highestOf(const Vardo::SpectrumSnapshot& spectrum);

} // namespace Standalone
