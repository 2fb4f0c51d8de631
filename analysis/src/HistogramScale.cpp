#include "analysis/HistogramScale.h"

#include <algorithm>
#include <cmath>

namespace Orvel {

namespace {

constexpr float kLowestDb = -96.0F;
constexpr std::uint32_t kInfinity = 0x7F800000U;

/// The definition.
int binByLogarithm(std::uint32_t bits) {
    const float db = 20.0F * std::log10(std::bit_cast<float>(bits));
    if (!(db >= kLowestDb)) return HistogramScale::kNoBin;
    const float above = std::min(db - kLowestDb, static_cast<float>(HistogramScale::kNumBins - 1));
    return static_cast<int>(above);
}

/// The first float in `from`..`to` whose bin is above that of `from`; `to` has such a bin.
std::uint32_t findEdge(std::uint32_t from, std::uint32_t to) {
    const int below = binByLogarithm(from);
    while (to - from > 1) {
        const std::uint32_t middle = from + (to - from) / 2;
        (binByLogarithm(middle) > below ? to : from) = middle;
    }
    return to;
}

const HistogramScale theScale;

} // namespace

HistogramScale::HistogramScale() {
    for (std::uint32_t i = 0; i < segments_.size(); ++i) {
        const std::uint32_t first = i << kSegmentShift;
        if (first >= kInfinity) break;
        const std::uint32_t last = first + ((1U << kSegmentShift) - 1);
        const int bin = binByLogarithm(first);
        segments_[i] = {binByLogarithm(last) > bin ? findEdge(first, last) : kNoEdge, bin};
    }
}

const HistogramScale& HistogramScale::instance() noexcept { return theScale; }

} // namespace Orvel
