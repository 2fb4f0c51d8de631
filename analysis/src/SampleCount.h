// Times in samples.
#pragma once

#include <algorithm>

namespace Orvel {

/// Whole samples in a time, at least 1, so that no window is ever empty.
inline int samplesIn(float milliseconds, float sampleRate) {
    return std::max(1, static_cast<int>(double{milliseconds} * double{sampleRate} * 0.001));
}

} // namespace Orvel
