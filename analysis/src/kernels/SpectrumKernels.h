// The loops of the Fourier transform and of decibels, in versions for the instruction sets around.
#pragma once

#include "core/RealTime.h"

namespace Orvel {

/// A real transform of N samples made of four complex ones of M = N / 8 points.
///
/// The samples n, n + 8, n + 16 ... for n = 0..7 are eight real sequences; two of them, as real and
/// imaginary part, make one complex piece. So short a transform stays inside the first cache, where
/// a quickly made plan is as good as a measured one; taking the pieces apart and joining them rides
/// along with the window in front and the decibels behind.
///
/// All versions give the same bits: nothing is summed up in an order that depends on the vector
/// length, and no multiply and add is fused.
struct SpectrumKernels {
    /// Samples times window into four pieces, each of `m` complex numbers, `pieceStride` apart.
    /// Samples below -260 dBFS become 0: numbers too small for full precision are slow, and no
    /// reading shows them. Null for `window`: all samples as they are.
    void (*split)(const float* samples, const float* window, int m, float* pieces);

    /// From the transformed pieces: 10 log10 of the power of the bins 0..N/2, plus `offsetDb`, at
    /// least `floorDb`. The powers are four times those of the transform. Within 3e-5 dB of the
    /// exact logarithm. `twiddles`: see `twiddleIndex`.
    void (*joinToDb)(const float* pieces,
                     const float* twiddles,
                     int m,
                     float offsetDb,
                     float floorDb,
                     float* db);

    /// From the transformed pieces: twice the bins 0..N/2, times `scale`, as pairs of real and
    /// imaginary part.
    void (*joinToBins)(const float* pieces, const float* twiddles, int m, float scale, float* bins);

    const char* name;
};

/// The version for this processor, chosen once.
const SpectrumKernels& spectrumKernels() noexcept ORVEL_NONBLOCKING;

/// For tests: the version every x86-64 processor runs.
extern const SpectrumKernels kBaselineSpectrumKernels;
/// For tests: the AVX2 version, or null where the processor lacks it.
const SpectrumKernels* avx2SpectrumKernels() noexcept;

/// Floats from one piece to the next. A cache line lies between them: without it, the same places
/// of all pieces would compete for the same few lines of the first cache.
constexpr int pieceStride(int m) { return 2 * m + 16; }

/// Twiddle factors in the order in which joining needs them: for each eight values of k, for
/// r = 1..7, eight real parts of exp(-2 pi i r k / N), then eight imaginary parts.
inline constexpr int kTwiddleBlock = 8;
/// Where the real part is; the imaginary part follows `kTwiddleBlock` later.
constexpr int twiddleIndex(int r, int k) {
    return (k / kTwiddleBlock * 7 + r - 1) * 2 * kTwiddleBlock + k % kTwiddleBlock;
}
/// Floats in the table, for k = 0..M/2.
constexpr int numTwiddles(int m) { return twiddleIndex(8, m / 2 / kTwiddleBlock * kTwiddleBlock); }

/// Smallest M that the kernels can do: pieces must be whole vectors.
inline constexpr int kSmallestPiece = 4;

} // namespace Orvel
