// The loops over samples that run on every slice, in versions for the instruction sets around.
#pragma once

#include "core/RealTime.h"

#include <cstdint>

namespace Orvel {

/// All versions give the same bits: no reduction depends on the order of additions of floats, and
/// no multiply and add is fused.
/// Shape: plain arrays, any alignment, no overlap between inputs and outputs.
/// Unit: linear amplitude, 1.0 is full scale.
struct Kernels {
    /// Copies, multiplied by `gain` and fit for measuring: NaN becomes 0, the rest is limited to
    /// +-1e6.
    void (*conditionInput)(const float* input, int count, float gain, float* output);

    /// From left and right makes mid, side and max, and the largest magnitude of each of the five
    /// channels (in their order).
    void (*formChannels)(const float* left,
                         const float* right,
                         int count,
                         float* mid,
                         float* side,
                         float* max,
                         float* peaks);

    /// For each sample: its square in fixed point replaces the ring entry at the same place.
    /// Gives the sum of the new entries less that of the old ones, modulo 2^64.
    std::uint64_t (*slideSquares)(const float* samples, int count, std::uint32_t* ring);

    /// Lowest and highest of at least one sample; no NaN among them.
    void (*findRange)(const float* samples, int count, float* lowest, float* highest);

    const char* name;
};

/// The version for this processor, chosen once.
const Kernels& kernels() noexcept ORVEL_NONBLOCKING;

/// For tests: the version every x86-64 processor runs.
extern const Kernels kBaselineKernels;
/// For tests: the AVX2 version, or null where the processor lacks it.
const Kernels* avx2Kernels() noexcept;

/// A square of 1.0 in the fixed point of `slideSquares`. A sum of a second of full-scale squares
/// at any rate stays far inside 64 bits; a single square saturates just below 2^32, at +23 dB.
inline constexpr float kSquareScale = 20000000.0F;

} // namespace Orvel
