#include "analysis/SpectrumRange.h"

#include "analysis/SpectrumHandover.h"

#include <algorithm>
#include <cmath>

namespace Orvel {

namespace {

constexpr float kOctavesOfPowerPerDb = 0.332192809F; // log2(10) / 10

std::size_t binAt(double hz, SpectrumLevels levels) {
    const double bin = hz / levels.binHz;
    return bin > 0 ? static_cast<std::size_t>(std::min(bin, static_cast<double>(levels.db.size())))
                   : 0;
}

} // namespace

float analyzeRange(AnalyzeMode mode, double fromHz, double toHz, SpectrumLevels levels) noexcept {
    if (levels.db.empty() || !(levels.binHz > 0)) return kLowestShownDb;
    const std::size_t from = std::min(binAt(fromHz, levels), levels.db.size() - 1);
    const std::size_t to = std::max(binAt(toHz, levels), from + 1);
    return analyzeBins(mode, levels.db.data() + from, to - from);
}

float analyzeBins(AnalyzeMode mode, const float* db, std::size_t count) noexcept {
    float highest = kLowestShownDb;
    if (mode == AnalyzeMode::magnitude) {
        for (std::size_t i = 0; i < count; ++i)
            highest = std::max(highest, db[i]);
        return highest;
    }
    double power = 0;
    for (std::size_t i = 0; i < count; ++i)
        if (db[i] > kLowestShownDb) power += double{std::exp2(db[i] * kOctavesOfPowerPerDb)};
    if (power <= 0) return kLowestShownDb;
    return std::max(kLowestShownDb, static_cast<float>(10 * std::log10(power)));
}

} // namespace Orvel
