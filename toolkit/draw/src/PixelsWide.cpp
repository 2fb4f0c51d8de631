#include "PixelsWide.h"

#include <cstring>
#include <immintrin.h>

// Only what carries this is compiled for the wider registers, so that nothing else needs them.
#define ORVEL_AVX2 __attribute__((target("avx2")))

namespace Sorel::Pixels::Wide {

namespace {

constexpr int kGroup = 8;
const bool kHasAvx2 = __builtin_cpu_supports("avx2") != 0;

/// Rounded x / 255 for x up to 255 * 255.
ORVEL_AVX2 inline __m256i over255(__m256i x) {
    x = _mm256_add_epi16(x, _mm256_set1_epi16(128));
    return _mm256_srli_epi16(_mm256_add_epi16(x, _mm256_srli_epi16(x, 8)), 8);
}

ORVEL_AVX2 inline __m256i complement(__m256i x) {
    return _mm256_sub_epi16(_mm256_set1_epi16(255), x);
}

ORVEL_AVX2 inline __m256i low(__m256i pixels) {
    return _mm256_unpacklo_epi8(pixels, _mm256_setzero_si256());
}

ORVEL_AVX2 inline __m256i high(__m256i pixels) {
    return _mm256_unpackhi_epi8(pixels, _mm256_setzero_si256());
}

ORVEL_AVX2 inline __m256i load(const void* pixels) {
    return _mm256_loadu_si256(static_cast<const __m256i*>(pixels));
}

ORVEL_AVX2 inline void store(void* pixels, __m256i value) {
    _mm256_storeu_si256(static_cast<__m256i*>(pixels), value);
}

/// The colour with 255 in place of its alpha: what a blend with that alpha moves towards.
ORVEL_AVX2 inline __m256i target(CColor c) {
    return _mm256_set1_epi64x(
        static_cast<long long>(std::uint64_t{c.blue} | std::uint64_t{c.green} << 16 |
                               std::uint64_t{c.red} << 32 | std::uint64_t{255} << 48));
}

/// The alpha of each pixel in all four of its lanes.
ORVEL_AVX2 inline __m256i alphaOf(__m256i x) {
    x = _mm256_shufflelo_epi16(x, _MM_SHUFFLE(3, 3, 3, 3));
    return _mm256_shufflehi_epi16(x, _MM_SHUFFLE(3, 3, 3, 3));
}

ORVEL_AVX2 inline __m256i mix(__m256i under, __m256i over, __m256i alpha) {
    return over255(_mm256_add_epi16(_mm256_mullo_epi16(over, alpha),
                                    _mm256_mullo_epi16(under, complement(alpha))));
}

/// A premultiplied source over what is there.
ORVEL_AVX2 inline __m256i cover(__m256i under, __m256i source) {
    const __m256i whole = _mm256_mullo_epi16(source, _mm256_set1_epi16(255));
    return over255(
        _mm256_adds_epu16(whole, _mm256_mullo_epi16(under, complement(alphaOf(source)))));
}

ORVEL_AVX2 int blendColor(std::uint8_t* row, int count, CColor color) {
    const __m256i over = target(color);
    const __m256i alpha = _mm256_set1_epi16(color.alpha);
    const __m256i part = _mm256_mullo_epi16(over, alpha);
    const __m256i rest = complement(alpha);
    int i = 0;
    for (; i + kGroup <= count; i += kGroup) {
        const __m256i d = load(row + 4 * i);
        const __m256i l = over255(_mm256_add_epi16(part, _mm256_mullo_epi16(low(d), rest)));
        const __m256i h = over255(_mm256_add_epi16(part, _mm256_mullo_epi16(high(d), rest)));
        store(row + 4 * i, _mm256_packus_epi16(l, h));
    }
    return i;
}

/// Coverage of eight pixels as it belongs to low() and high() of them.
struct Coverage {
    __m256i low;
    __m256i high;
};

ORVEL_AVX2 inline Coverage spread(std::uint64_t eight) {
    const __m256i both = _mm256_set1_epi64x(static_cast<long long>(eight));
    constexpr char n = -1; // nothing
    const __m256i lowPlaces = _mm256_setr_epi8(0, n, 0, n, 0, n, 0, n, 1, n, 1, n, 1, n, 1, n, //
                                               4, n, 4, n, 4, n, 4, n, 5, n, 5, n, 5, n, 5, n);
    const __m256i highPlaces = _mm256_setr_epi8(2, n, 2, n, 2, n, 2, n, 3, n, 3, n, 3, n, 3, n, //
                                                6, n, 6, n, 6, n, 6, n, 7, n, 7, n, 7, n, 7, n);
    return {_mm256_shuffle_epi8(both, lowPlaces), _mm256_shuffle_epi8(both, highPlaces)};
}

ORVEL_AVX2 int
blendCovered(std::uint8_t* row, int count, CColor color, const std::uint8_t* coverage) {
    const __m256i over = target(color);
    const __m256i alpha = _mm256_set1_epi16(color.alpha);
    int i = 0;
    for (; i + kGroup <= count; i += kGroup) {
        std::uint64_t eight = 0;
        std::memcpy(&eight, coverage + i, sizeof eight);
        if (eight == 0) continue;
        Coverage c = spread(eight);
        if (color.alpha != 255) {
            c.low = over255(_mm256_mullo_epi16(c.low, alpha));
            c.high = over255(_mm256_mullo_epi16(c.high, alpha));
        }
        const __m256i d = load(row + 4 * i);
        store(row + 4 * i,
              _mm256_packus_epi16(mix(low(d), over, c.low), mix(high(d), over, c.high)));
    }
    return i;
}

ORVEL_AVX2 int blendPicture(std::uint8_t* row, int count, const Pixel* source) {
    const __m256i alphas = _mm256_set1_epi32(static_cast<int>(0xFF000000U));
    int i = 0;
    for (; i + kGroup <= count; i += kGroup) {
        const __m256i s = load(source + i);
        if (_mm256_testz_si256(s, s) != 0) continue;
        if (_mm256_testc_si256(s, alphas) != 0) {
            store(row + 4 * i, s);
            continue;
        }
        const __m256i d = load(row + 4 * i);
        store(row + 4 * i, _mm256_packus_epi16(cover(low(d), low(s)), cover(high(d), high(s))));
    }
    return i;
}

} // namespace

int blend(std::uint8_t* row, int count, CColor color) {
    return kHasAvx2 ? blendColor(row, count, color) : 0;
}

int blend(std::uint8_t* row, int count, CColor color, const std::uint8_t* coverage) {
    return kHasAvx2 ? blendCovered(row, count, color, coverage) : 0;
}

int blend(std::uint8_t* row, int count, const Pixel* source) {
    return kHasAvx2 ? blendPicture(row, count, source) : 0;
}

} // namespace Sorel::Pixels::Wide
