// The loops themselves, in the vector types that both g++ and clang know. Compiled once per
// instruction set, so nothing but the two lines below may be included here: an inline function of a
// library compiled for AVX2 could end up serving the whole program.
//
// KERNEL_SET names the SpectrumKernels object, KERNEL_NAME the instruction set, KERNEL_LANES the
// floats in a vector: 4 or 8.

#include "SpectrumKernels.h"

#include <cstdint>

namespace Orvel {

namespace {

constexpr int kLanes = KERNEL_LANES;
using Floats = float __attribute__((vector_size(4 * KERNEL_LANES)));
using Ints = std::int32_t __attribute__((vector_size(4 * KERNEL_LANES)));
using Pairs = std::int64_t __attribute__((vector_size(4 * KERNEL_LANES))); // two floats each

inline Floats load(const float* at) {
    Floats value;
    __builtin_memcpy(&value, at, sizeof value);
    return value;
}
inline void store(float* at, Floats value) { __builtin_memcpy(at, &value, sizeof value); }

#if KERNEL_LANES == 8
#define SHUFFLE(a, b, ...) __builtin_shufflevector(a, b, __VA_ARGS__)
inline Floats evens(Floats a, Floats b) { return SHUFFLE(a, b, 0, 2, 4, 6, 8, 10, 12, 14); }
inline Floats odds(Floats a, Floats b) { return SHUFFLE(a, b, 1, 3, 5, 7, 9, 11, 13, 15); }
inline Floats reversed(Floats a) { return SHUFFLE(a, a, 7, 6, 5, 4, 3, 2, 1, 0); }
#else
#define SHUFFLE(a, b, ...) __builtin_shufflevector(a, b, __VA_ARGS__)
inline Floats evens(Floats a, Floats b) { return SHUFFLE(a, b, 0, 2, 4, 6); }
inline Floats odds(Floats a, Floats b) { return SHUFFLE(a, b, 1, 3, 5, 7); }
inline Floats reversed(Floats a) { return SHUFFLE(a, a, 3, 2, 1, 0); }
#endif

// ---- split ----------------------------------------------------------------------------------

constexpr float kNothing = 1e-13F; // -260 dBFS

template <bool kWindowed>
inline Pairs windowed(const float* samples, const float* window) {
    Floats x = load(samples);
    if constexpr (kWindowed) {
        const Ints keep = (x > kNothing) | (x < -kNothing);
        x = __builtin_bit_cast(Floats, __builtin_bit_cast(Ints, x) & keep) * load(window);
    }
    return __builtin_bit_cast(Pairs, x);
}

inline void storePairs(float* at, Pairs value) { __builtin_memcpy(at, &value, sizeof value); }

template <bool kWindowed>
void splitInto(const float* samples, const float* window, int m, float* pieces) {
    float* const piece0 = pieces;
    float* const piece1 = pieces + pieceStride(m);
    float* const piece2 = pieces + 2 * pieceStride(m);
    float* const piece3 = pieces + 3 * pieceStride(m);
    for (int n = 0; n < m; n += kLanes / 2) {
        const float* const x = samples + 8 * n;
        const float* const w = kWindowed ? window + 8 * n : nullptr;
        const auto at = [&](int offset) {
            return windowed<kWindowed>(x + offset, kWindowed ? w + offset : nullptr);
        };
#if KERNEL_LANES == 8
        const Pairs a = at(0);
        const Pairs b = at(8);
        const Pairs c = at(16);
        const Pairs d = at(24);
        const Pairs ab02 = SHUFFLE(a, b, 0, 4, 2, 6);
        const Pairs ab13 = SHUFFLE(a, b, 1, 5, 3, 7);
        const Pairs cd02 = SHUFFLE(c, d, 0, 4, 2, 6);
        const Pairs cd13 = SHUFFLE(c, d, 1, 5, 3, 7);
        storePairs(piece0 + 2 * n, SHUFFLE(ab02, cd02, 0, 1, 4, 5));
        storePairs(piece1 + 2 * n, SHUFFLE(ab13, cd13, 0, 1, 4, 5));
        storePairs(piece2 + 2 * n, SHUFFLE(ab02, cd02, 2, 3, 6, 7));
        storePairs(piece3 + 2 * n, SHUFFLE(ab13, cd13, 2, 3, 6, 7));
#else
        const Pairs a01 = at(0);
        const Pairs a23 = at(4);
        const Pairs b01 = at(8);
        const Pairs b23 = at(12);
        storePairs(piece0 + 2 * n, SHUFFLE(a01, b01, 0, 2));
        storePairs(piece1 + 2 * n, SHUFFLE(a01, b01, 1, 3));
        storePairs(piece2 + 2 * n, SHUFFLE(a23, b23, 0, 2));
        storePairs(piece3 + 2 * n, SHUFFLE(a23, b23, 1, 3));
#endif
    }
}

void split(const float* samples, const float* window, int m, float* pieces) {
    if (window != nullptr)
        splitInto<true>(samples, window, m, pieces);
    else
        splitInto<false>(samples, nullptr, m, pieces);
}

// ---- join -----------------------------------------------------------------------------------
// V is Floats, for as many bins at once, or float, for the few that stand alone.

template <typename V>
struct Complex {
    V re, im;
};
template <typename V>
inline Complex<V> operator+(Complex<V> a, Complex<V> b) {
    return {a.re + b.re, a.im + b.im};
}
template <typename V>
inline Complex<V> operator-(Complex<V> a, Complex<V> b) {
    return {a.re - b.re, a.im - b.im};
}
template <typename V>
inline Complex<V> operator*(Complex<V> a, Complex<V> b) {
    return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re};
}
template <typename V>
inline Complex<V> timesMinusI(Complex<V> a) {
    return {a.im, -a.re};
}

template <typename V>
struct FourPoints {
    Complex<V> f[4];
};
template <typename V>
inline FourPoints<V> fourPoints(Complex<V> a, Complex<V> b, Complex<V> c, Complex<V> d) {
    const Complex<V> s = a + c;
    const Complex<V> t = a - c;
    const Complex<V> u = b + d;
    const Complex<V> v = timesMinusI(b - d);
    return {{s + u, t + v, s - u, t - v}};
}

// Bin k of a piece and its mirror image, bin M - k.
inline void loadBins(const float* piece, int k, Complex<Floats>& bin) {
    const Floats a = load(piece + 2 * k);
    const Floats b = load(piece + 2 * k + kLanes);
    bin = {evens(a, b), odds(a, b)};
}
inline void loadMirror(const float* piece, int m, int k, Complex<Floats>& bin) {
    loadBins(piece, m - k - kLanes + 1, bin);
    bin = {reversed(bin.re), reversed(bin.im)};
}
inline void loadBins(const float* piece, int k, Complex<float>& bin) {
    bin = {piece[2 * k], piece[2 * k + 1]};
}
inline void loadMirror(const float* piece, int m, int k, Complex<float>& bin) {
    loadBins(piece, k == 0 ? 0 : m - k, bin);
}
inline void loadValue(const float* at, Floats& value) { value = load(at); }
inline void loadValue(const float* at, float& value) { value = *at; }

template <typename V>
inline Complex<V> twiddled(Complex<V> bin, const float* twiddles, int r, int k) {
    Complex<V> factor;
    loadValue(twiddles + twiddleIndex(r, k), factor.re);
    loadValue(twiddles + twiddleIndex(r, k) + kTwiddleBlock, factor.im);
    return bin * factor;
}

/// Bins k + M j for j = 0..3, and for j = 4..7 their mirror images N - (k + M j).
template <typename V, typename Sink>
inline void joinAt(const float* pieces, const float* twiddles, int m, int k, const Sink& sink) {
    Complex<V> x[8]; // twice the transforms of the eight real sequences, turned into place
    for (int p = 0; p < 4; ++p) {
        Complex<V> bin;
        Complex<V> mirror;
        loadBins(pieces + p * pieceStride(m), k, bin);
        loadMirror(pieces + p * pieceStride(m), m, k, mirror);
        const Complex<V> real{bin.re + mirror.re, bin.im - mirror.im};
        const Complex<V> imaginary{bin.im + mirror.im, mirror.re - bin.re};
        x[2 * p] = p == 0 ? real : twiddled(real, twiddles, 2 * p, k);
        x[2 * p + 1] = twiddled(imaginary, twiddles, 2 * p + 1, k);
    }
    constexpr float kRootHalf = 0.70710678F;
    const FourPoints<V> even = fourPoints(x[0], x[2], x[4], x[6]);
    const FourPoints<V> odd = fourPoints(x[1], x[3], x[5], x[7]);
    const Complex<V> odd1{(odd.f[1].re + odd.f[1].im) * kRootHalf,
                          (odd.f[1].im - odd.f[1].re) * kRootHalf};
    const Complex<V> odd2 = timesMinusI(odd.f[2]);
    const Complex<V> odd3{(odd.f[3].im - odd.f[3].re) * kRootHalf,
                          (odd.f[3].re + odd.f[3].im) * -kRootHalf};
    sink.forward(k, even.f[0] + odd.f[0]);
    sink.forward(k + m, even.f[1] + odd1);
    sink.forward(k + 2 * m, even.f[2] + odd2);
    sink.forward(k + 3 * m, even.f[3] + odd3);
    sink.mirrored(4 * m - k, even.f[0] - odd.f[0]);
    sink.mirrored(3 * m - k, even.f[1] - odd1);
    sink.mirrored(2 * m - k, even.f[2] - odd2);
    sink.mirrored(m - k, even.f[3] - odd3);
}

template <typename Sink>
void joinAll(const float* pieces, const float* twiddles, int m, const Sink& sink) {
    const int half = m / 2;
    if (half >= kLanes) {
        // The very first lane takes for its mirror image what lies behind the piece; its bins are
        // made again below.
        for (int k = 0; k < half; k += kLanes)
            joinAt<Floats>(pieces, twiddles, m, k, sink);
    } else {
        for (int k = 1; k < half; ++k)
            joinAt<float>(pieces, twiddles, m, k, sink);
    }
    joinAt<float>(pieces, twiddles, m, 0, sink);
    joinAt<float>(pieces, twiddles, m, half, sink);
}

// ---- decibels -------------------------------------------------------------------------------

constexpr float kDbPerOctaveOfPower = 3.01029996F; // 10 log10(2)
constexpr std::int32_t kRootHalfBits = 0x3F3504F3; // the float sqrt(1/2)

inline Floats toFloats(Ints x) { return __builtin_convertvector(x, Floats); }
inline float toFloats(std::int32_t x) { return static_cast<float>(x); }

/// 10 log10(power). The exponent counts octaves; what is left of the power lies between sqrt(1/2)
/// and sqrt(2), where log2(1 + x) is x times a polynomial through its values at the Chebyshev
/// points, 1.3e-5 dB off at most. 0 reads as about -382 dB.
template <typename V, typename I>
inline V powerToDb(V power) {
    const I bits = __builtin_bit_cast(I, power);
    const I octaves = (bits - kRootHalfBits) >> 23;
    const V x = __builtin_bit_cast(V, bits - octaves * (1 << 23)) - 1.0F;
    V sum = x * -0.202289268F + 0.316898197F;
    sum = sum * x + -0.366925776F;
    sum = sum * x + 0.479925573F;
    sum = sum * x + -0.721195757F;
    sum = sum * x + 1.44270039F;
    return (sum * x + toFloats(octaves)) * kDbPerOctaveOfPower;
}

/// Powers first: the logarithms then run in a loop of their own, in which many are on their way at
/// the same time.
struct PowerSink {
    float* power;

    void forward(int bin, Complex<Floats> value) const { store(power + bin, of(value)); }
    void mirrored(int bin, Complex<Floats> value) const {
        store(power + bin - kLanes + 1, reversed(of(value)));
    }
    void forward(int bin, Complex<float> value) const { power[bin] = of(value); }
    void mirrored(int bin, Complex<float> value) const { forward(bin, value); }

    template <typename V>
    static V of(Complex<V> value) {
        return value.re * value.re + value.im * value.im;
    }
};

template <typename V, typename I>
inline V level(V power, float offsetDb, float floorDb) {
    const V value = powerToDb<V, I>(power) + offsetDb;
    return value > floorDb ? value : V{} + floorDb;
}

void joinToDb(
    const float* pieces, const float* twiddles, int m, float offsetDb, float floorDb, float* db) {
    joinAll(pieces, twiddles, m, PowerSink{db});
    int bin = 0;
    for (; bin < 4 * m; bin += kLanes)
        store(db + bin, level<Floats, Ints>(load(db + bin), offsetDb, floorDb));
    db[bin] = level<float, std::int32_t>(db[bin], offsetDb, floorDb);
}

struct BinSink {
    float scale;
    float* bins;

    void forward(int bin, Complex<float> value) const {
        bins[2 * bin] = value.re * scale;
        bins[2 * bin + 1] = value.im * scale;
    }
    void mirrored(int bin, Complex<float> value) const {
        forward(bin, Complex<float>{value.re, -value.im});
    }
    void forward(int bin, Complex<Floats> value) const {
        for (int lane = 0; lane < kLanes; ++lane)
            forward(bin + lane, Complex<float>{value.re[lane], value.im[lane]});
    }
    void mirrored(int bin, Complex<Floats> value) const {
        for (int lane = 0; lane < kLanes; ++lane)
            mirrored(bin - lane, Complex<float>{value.re[lane], value.im[lane]});
    }
};

void joinToBins(const float* pieces, const float* twiddles, int m, float scale, float* bins) {
    joinAll(pieces, twiddles, m, BinSink{scale, bins});
}

#undef SHUFFLE

} // namespace

extern const SpectrumKernels KERNEL_SET;
const SpectrumKernels KERNEL_SET = {split, joinToDb, joinToBins, KERNEL_NAME};

} // namespace Orvel
