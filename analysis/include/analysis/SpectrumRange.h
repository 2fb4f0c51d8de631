// The one level that stands for a range of frequencies.
#pragma once

#include <cstddef>
#include <vector>

namespace Orvel {

enum class AnalyzeMode : int { magnitude = 0, energy = 1 };

/// Levels in dB by bin, and the width of a bin in Hz.
struct SpectrumLevels {
    const std::vector<float>& db;
    double binHz;
};

/// The level of the bins from `fromHz` up to, but without, `toHz`; at least one bin. The highest
/// level, or that of the sum of their powers. Bins at or below -72 dB are silent: they add no
/// energy, or silence would read louder the more bins a range has. At least -72 dB.
/// Threads: any, while nobody writes the levels.
float analyzeRange(AnalyzeMode mode, double fromHz, double toHz, SpectrumLevels levels) noexcept;

/// The same of `count` bins that stand at `db`, for callers that know them.
float analyzeBins(AnalyzeMode mode, const float* db, std::size_t count) noexcept;

} // namespace Orvel
