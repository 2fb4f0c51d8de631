// Which decibel bin a sample belongs to, without a logarithm.
#pragma once

#include "core/RealTime.h"

#include <array>
#include <bit>
#include <cstdint>

namespace Orvel {

/// Bins of 1 dB: bin i holds magnitudes from i - 96 to i - 95 dBFS, the last one everything from
/// +12 dB up. A bin is the same as (int)(20 * log10f(|x|) + 96) in single precision, clamped to
/// 0..108, for every finite float; the tests compare them all.
class HistogramScale {
  public:
    static constexpr int kNumBins = 109;
    static constexpr int kNoBin = -1; ///< below -96 dBFS, 0, or not finite

    HistogramScale();

    int bin(float sample) const noexcept ORVEL_NONBLOCKING {
        const std::uint32_t bits = std::bit_cast<std::uint32_t>(sample) & 0x7FFFFFFFU;
        const Segment& segment = segments_[bits >> kSegmentShift];
        return segment.binBelow + static_cast<int>(bits >= segment.edge);
    }

    /// One scale serves all; made when the module is loaded.
    static const HistogramScale& instance() noexcept ORVEL_NONBLOCKING;

  private:
    // Floats with the same exponent and upper four bits of mantissa: 0.53 dB at the most, so at
    // most one edge between bins lies in a segment.
    static constexpr std::uint32_t kNoEdge = 0xFFFFFFFFU;
    struct Segment {
        std::uint32_t edge = kNoEdge; // first float (as bits) that belongs to the bin above
        std::int32_t binBelow = kNoBin;
    };
    static constexpr int kSegmentShift = 19;

    std::array<Segment, (0x80000000U >> kSegmentShift)> segments_;
};

} // namespace Orvel
