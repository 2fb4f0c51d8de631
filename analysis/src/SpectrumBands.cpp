#include "analysis/SpectrumBands.h"

#include "analysis/SpectrumScale.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace Orvel {

namespace {
constexpr float kRise = 0.65F; // part of the way to a higher level, per step
constexpr float kFall = 0.15F;
} // namespace

SpectrumBands::SpectrumBands() { setSampleRate(48000); }

void SpectrumBands::setSampleRate(double sampleRate) noexcept {
    const double highest = std::max(1000.0, sampleRate) / 2;
    const double lowest = double{kLowestShownHz};
    const auto edge = [&](int k) {
        return static_cast<float>(lowest * std::pow(highest / lowest, k / double{kNumBands}));
    };
    for (int k = 0; k < kNumBands; ++k) {
        SpectrumBand& band = bands_[static_cast<std::size_t>(k)];
        band.lowHz = edge(k);
        band.highHz = k == kNumBands - 1 ? static_cast<float>(highest) : edge(k + 1);
    }
    clear();
}

void SpectrumBands::setShownCount(int count) noexcept {
    shownCount_ =
        static_cast<int>(std::bit_floor(static_cast<unsigned>(std::clamp(count, 8, kNumBands))));
    formShown();
}

void SpectrumBands::clear() noexcept {
    for (SpectrumBand& band : bands_)
        band = {band.lowHz, band.highHz};
    formShown();
}

void SpectrumBands::step(SpectrumLevels levels,
                         AnalyzeMode mode,
                         const SpectrumPeakHold& hold,
                         float ms) noexcept {
    for (SpectrumBand& band : bands_) {
        const float level = analyzeRange(mode, double{band.lowHz}, double{band.highHz}, levels);
        band.value += (level - band.value) * (level >= band.value ? kRise : kFall);
        hold.step(level, ms, band.peak, band.holdMs);
        band.peak = std::max({band.peak, level, band.value});
    }
    formShown();
}

void SpectrumBands::formShown() noexcept {
    const auto size = static_cast<std::size_t>(kNumBands / shownCount_);
    for (std::size_t i = 0; i < static_cast<std::size_t>(shownCount_); ++i) {
        const std::span<const SpectrumBand> group(bands_.data() + i * size, size);
        const auto loudest =
            std::max_element(group.begin(), group.end(),
                             [](const auto& a, const auto& b) { return a.value < b.value; });
        const auto highest =
            std::max_element(group.begin(), group.end(),
                             [](const auto& a, const auto& b) { return a.peak < b.peak; });
        shown_[i] = {group.front().lowHz, group.back().highHz, loudest->value, highest->peak,
                     highest->holdMs};
    }
}

} // namespace Orvel
