#include "analysis/SpectrumScale.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace Orvel {

void FrequencyScale::setSampleRate(double sampleRate) noexcept {
    highestHz_ = std::max(1000.0, sampleRate) / 2;
}

void FrequencyScale::setWidth(double width) noexcept { width_ = width > 0 ? width : 1; }

double FrequencyScale::limited(double hz) const noexcept {
    return hz >= double{kLowestShownHz} ? std::min(hz, highestHz_) : double{kLowestShownHz};
}

double FrequencyScale::frequencyAt(double x) const noexcept {
    const double lowest = double{kLowestShownHz};
    const double part = x / width_;
    return linear_ ? (highestHz_ - lowest) * part + lowest
                   : lowest * std::pow(highestHz_ / lowest, part);
}

double FrequencyScale::positionOf(double hz) const noexcept {
    const double lowest = double{kLowestShownHz};
    const double f = std::max(lowest, hz);
    return linear_ ? (f - lowest) / (highestHz_ - lowest) * width_
                   : std::log(f / lowest) / std::log(highestHz_ / lowest) * width_;
}

float levelPosition(float db, float top, float bottom) noexcept {
    const float shown = std::clamp(db, kLowestShownDb, kHighestShownDb);
    return bottom -
           (bottom - top) * ((shown - kLowestShownDb) / (kHighestShownDb - kLowestShownDb));
}

namespace {
constexpr int kLastEntry = 65535;
std::array<float, kLastEntry + 1> makeRaisedCosine() {
    std::array<float, kLastEntry + 1> table;
    for (std::size_t i = 0; i < table.size(); ++i)
        table[i] = static_cast<float>(
            (1 - std::cos(std::numbers::pi * static_cast<double>(i) / kLastEntry)) * 0.5);
    return table;
}
} // namespace

float raisedCosine(float t) noexcept {
    static const std::array<float, kLastEntry + 1> table = makeRaisedCosine();
    return table[static_cast<std::size_t>(std::clamp(t, 0.0F, 1.0F) * float{kLastEntry})];
}

} // namespace Orvel
