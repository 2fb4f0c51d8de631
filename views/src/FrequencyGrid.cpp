#include "views/FrequencyGrid.h"

#include "views/DisplayControl.h"

#include <algorithm>
#include <cmath>

namespace Sorel {

namespace {
constexpr int kSlots = 25;
constexpr double kOctavesHz[] = {15,   30,   61,    122,   250,   500,    1000,  2000,
                                 4000, 8000, 16000, 32000, 64000, 128000, 192000};

double nearestOctave(double hz) {
    return *std::min_element(
        std::begin(kOctavesHz), std::end(kOctavesHz),
        [hz](double a, double b) { return std::abs(a - hz) < std::abs(b - hz); });
}
} // namespace

void FrequencyGrid::place(const Orvel::FrequencyScale& scale) {
    lines_.clear();
    for (int slot = 1; slot < kSlots; ++slot) {
        const double hz =
            scale.limited(nearestOctave(scale.frequencyAt(slot * scale.width() / kSlots)));
        const bool atAnEdge = hz <= double{Orvel::kLowestShownHz} || hz >= scale.highestHz();
        if (atAnEdge || (!lines_.empty() && lines_.back().hz >= hz)) continue;
        lines_.push_back({hz, scale.positionOf(hz), numberText(hz, 0)});
    }
}

} // namespace Sorel
