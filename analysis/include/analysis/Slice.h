// A millisecond of audio at the most, as all measures see it.
#pragma once

#include "frame/AnalysisSnapshot.h"

namespace Orvel {

/// The five analysis channels of one slice, and their peaks. Pointers are good for this slice only.
struct Slice {
    int count = 0; ///< samples, at least 1
    const float* channels[Vardo::kNumAnalysisChannels] = {};
    float peaks[Vardo::kNumAnalysisChannels] = {}; ///< largest magnitudes, linear

    const float* left() const { return channels[Vardo::kLeft]; }
    const float* right() const { return channels[Vardo::kRight]; }
};

} // namespace Orvel
