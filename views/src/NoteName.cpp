#include "views/NoteName.h"

#include <algorithm>
#include <iterator>

namespace Sorel {

namespace {
constexpr const char* kNames[] = {"C", "#C", "D", "#D", "E", "F", "#F", "G", "#G", "A", "#A", "B"};
constexpr double kNotesHz[] = {261.626, 277.183, 293.665, 311.127, 329.628, 349.228,
                               369.994, 391.995, 415.305, 440.0,   466.164};
constexpr double kHighestHz = 1e6;
} // namespace

std::string noteName(double hz) {
    double f = hz >= 1.0 ? std::min(hz, kHighestHz) : 1.0;
    int octave = 1;
    for (; f < kNotesHz[0]; f *= 2.0)
        --octave;
    for (; f >= 2.0 * kNotesHz[0]; f *= 0.5)
        ++octave;
    const auto above = std::upper_bound(std::begin(kNotesHz), std::end(kNotesHz), f);
    const auto index = above - std::begin(kNotesHz) - 1;
    const bool isB = f > kNotesHz[std::size(kNotesHz) - 1];
    return kNames[isB ? index + 1 : index] + std::to_string(octave);
}

} // namespace Sorel
