// The loops themselves, written so that the compiler turns them into vector code. Compiled once per
// instruction set, so nothing but the two lines below may be included here: an inline function of a
// library compiled for AVX2 could end up serving the whole program.
//
// KERNEL_SET names the Kernels object, KERNEL_NAME the instruction set.

#include "Kernels.h"

#include <cstdint>

namespace Orvel {

namespace {

constexpr float kLimit = 1e6F;
constexpr float kTwo31 = 2147483648.0F;
constexpr float kLargestBelowTwo32 = 4294967040.0F;
constexpr std::int32_t kMagnitudeMask = 0x7FFFFFFF;

// The bits of a magnitude are ordered as the magnitude is, so the largest can be found among
// integers, which needs no promise about NaN from the compiler.
inline std::int32_t magnitudeBits(float x) {
    return __builtin_bit_cast(std::int32_t, x) & kMagnitudeMask;
}

inline std::int32_t larger(std::int32_t a, std::int32_t b) { return a > b ? a : b; }

void conditionInput(const float* __restrict input, int count, float gain, float* __restrict output) {
    for (int i = 0; i < count; ++i) {
        float x = input[i] * gain;
        x = x == x ? x : 0.0F;
        x = x > kLimit ? kLimit : x;
        x = x < -kLimit ? -kLimit : x;
        output[i] = x;
    }
}

void formChannels(const float* __restrict left,
                  const float* __restrict right,
                  int count,
                  float* __restrict mid,
                  float* __restrict side,
                  float* __restrict max,
                  float* peaks) {
    std::int32_t peakLeft = 0;
    std::int32_t peakRight = 0;
    std::int32_t peakMid = 0;
    std::int32_t peakSide = 0;
    for (int i = 0; i < count; ++i) {
        const float l = left[i];
        const float r = right[i];
        const float m = (l + r) * 0.5F;
        const float s = (l - r) * 0.5F;
        mid[i] = m;
        side[i] = s;
        max[i] = magnitudeBits(l) > magnitudeBits(r) ? l : r;
        peakLeft = larger(peakLeft, magnitudeBits(l));
        peakRight = larger(peakRight, magnitudeBits(r));
        peakMid = larger(peakMid, magnitudeBits(m));
        peakSide = larger(peakSide, magnitudeBits(s));
    }
    peaks[0] = __builtin_bit_cast(float, peakLeft);
    peaks[1] = __builtin_bit_cast(float, peakRight);
    peaks[2] = __builtin_bit_cast(float, peakMid);
    peaks[3] = __builtin_bit_cast(float, peakSide);
    peaks[4] = __builtin_bit_cast(float, larger(peakLeft, peakRight));
}

std::uint64_t
slideSquares(const float* __restrict samples, int count, std::uint32_t* __restrict ring) {
    std::uint64_t change = 0;
    for (int i = 0; i < count; ++i) {
        const float scaled = samples[i] * kSquareScale * samples[i];
        const float square = scaled < kLargestBelowTwo32 ? scaled : kLargestBelowTwo32;
        // Truncation to 32 unsigned bits, by way of the signed conversion that vectors have.
        const bool upper = square >= kTwo31;
        const float lowerPart = upper ? square - kTwo31 : square;
        const std::uint32_t entry =
            static_cast<std::uint32_t>(static_cast<std::int32_t>(lowerPart)) +
            (upper ? 0x80000000U : 0U);
        change += static_cast<std::uint64_t>(entry);
        change -= static_cast<std::uint64_t>(ring[i]);
        ring[i] = entry;
    }
    return change;
}

// Bits of floats as integers of the same order; its own inverse.
inline std::int32_t ordered(std::int32_t bits) { return bits ^ ((bits >> 31) & kMagnitudeMask); }

void findRange(const float* __restrict samples, int count, float* lowest, float* highest) {
    std::int32_t low = 0x7FFFFFFF;
    std::int32_t high = -0x7FFFFFFF - 1;
    for (int i = 0; i < count; ++i) {
        const std::int32_t value = ordered(__builtin_bit_cast(std::int32_t, samples[i]));
        low = value < low ? value : low;
        high = value > high ? value : high;
    }
    *lowest = __builtin_bit_cast(float, ordered(low));
    *highest = __builtin_bit_cast(float, ordered(high));
}

} // namespace

extern const Kernels KERNEL_SET;
const Kernels KERNEL_SET = {conditionInput, formChannels, slideSquares, findRange, KERNEL_NAME};

} // namespace Orvel
