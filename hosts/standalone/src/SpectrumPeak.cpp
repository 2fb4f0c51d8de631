// The loudest frequency of a spectrum.
#include "SpectrumPeak.h"

#include "frame/NoteName.h"

#include <algorithm>
#include <cmath>

namespace Standalone {

namespace {
constexpr double kLowestHz = 20;
} // namespace

std::optional<SpectrumPeak> highestOf(const Vardo::SpectrumSnapshot& spectrum) {
    if (spectrum.frames == 0 || spectrum.midDb.empty()) return std::nullopt;
    const auto first = std::min(static_cast<std::size_t>(std::ceil(kLowestHz / spectrum.binHz)),
                                spectrum.midDb.size() - 1);
    const auto highest = std::max_element(
        spectrum.midDb.begin() + static_cast<std::ptrdiff_t>(first), spectrum.midDb.end());
    const double hz = static_cast<double>(highest - spectrum.midDb.begin()) * spectrum.binHz;
    char note[16];
    Vardo::formatNoteAt(hz, note, sizeof note);
    return SpectrumPeak{*highest, hz, note};
}

} // namespace Standalone
