// Times in samples.
#pragma once

#include <algorithm>

namespace Orvel {

/// Samples of a slice at a rate: a millisecond, and at least one.
inline int sliceLength(double sampleRate) {
    return std::max(1, static_cast<int>(sampleRate * 0.001));
}
/// No slice is longer, at the highest rate a host may set.
inline constexpr int kLongestSlice = 1536;

/// Whole samples in a time, at least 1, so that no window is ever empty.
inline int samplesIn(float milliseconds, float sampleRate) {
    return std::max(1, static_cast<int>(double{milliseconds} * double{sampleRate} * 0.001));
}

} // namespace Orvel
