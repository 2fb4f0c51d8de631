// What no host in its senses goes beyond; a number that does is a mistake, not a wish.
#pragma once

namespace Vardo {

/// Frames of one block.
inline constexpr int kLargestBlock = 1 << 20;

/// Beats per minute; anything else is a host without a tempo. False for NaN.
inline constexpr bool isTempo(double beatsPerMinute) {
    return beatsPerMinute >= 1.0 && beatsPerMinute <= 1000.0;
}

} // namespace Vardo
