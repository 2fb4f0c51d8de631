// Four pixels at a time in 16-bit lanes, with the SSE2 that every x86-64 has; what newer processors
// can do better begins each row (PixelsWide.h).
#include "Pixels.h"

#include "PixelsWide.h"

#include <cstring>
#include <emmintrin.h>

namespace Sorel::Pixels {

namespace {

/// Channels of four pixels as 16-bit numbers: two pixels in each half.
struct Four {
    __m128i low;
    __m128i high;
};

Four widen(__m128i pixels) {
    const __m128i zero = _mm_setzero_si128();
    return {_mm_unpacklo_epi8(pixels, zero), _mm_unpackhi_epi8(pixels, zero)};
}

__m128i narrow(const Four& w) { return _mm_packus_epi16(w.low, w.high); }

/// Rounded x / 255 for x up to 255 * 255.
__m128i over255(__m128i x) {
    x = _mm_add_epi16(x, _mm_set1_epi16(128));
    return _mm_srli_epi16(_mm_add_epi16(x, _mm_srli_epi16(x, 8)), 8);
}

__m128i complement(__m128i x) { return _mm_sub_epi16(_mm_set1_epi16(255), x); }

/// The alpha of each pixel in all four of its lanes.
__m128i alphaOf(__m128i x) {
    x = _mm_shufflelo_epi16(x, _MM_SHUFFLE(3, 3, 3, 3));
    return _mm_shufflehi_epi16(x, _MM_SHUFFLE(3, 3, 3, 3));
}

/// `count` (1 to 4) coverage bytes, each in all four lanes of its pixel.
Four loadCoverage(const std::uint8_t* coverage, int count) {
    std::int32_t four = 0;
    std::memcpy(&four, coverage, static_cast<std::size_t>(count));
    __m128i x = _mm_cvtsi32_si128(four);
    x = _mm_unpacklo_epi8(x, x);
    return widen(_mm_unpacklo_epi16(x, x));
}

bool isNothing(const std::uint8_t* coverage, int count) {
    std::int32_t four = 0;
    std::memcpy(&four, coverage, static_cast<std::size_t>(count));
    return four == 0;
}

__m128i loadPixels(const void* pixels, int count) {
    if (count == 4) return _mm_loadu_si128(static_cast<const __m128i*>(pixels));
    if (count == 1) {
        std::int32_t one = 0;
        std::memcpy(&one, pixels, 4);
        return _mm_cvtsi32_si128(one);
    }
    alignas(16) Pixel four[4] = {};
    std::memcpy(four, pixels, static_cast<std::size_t>(count) * 4);
    return _mm_load_si128(reinterpret_cast<const __m128i*>(four));
}

void storePixels(void* pixels, __m128i value, int count) {
    if (count == 4) {
        _mm_storeu_si128(static_cast<__m128i*>(pixels), value);
        return;
    }
    if (count == 1) {
        const std::int32_t one = _mm_cvtsi128_si32(value);
        std::memcpy(pixels, &one, 4);
        return;
    }
    alignas(16) Pixel four[4];
    _mm_store_si128(reinterpret_cast<__m128i*>(four), value);
    std::memcpy(pixels, four, static_cast<std::size_t>(count) * 4);
}

/// Calls `step(first, n)` for groups of four pixels and once for those left over.
template <class Step>
void inFours(int count, Step step) {
    int i = 0;
    for (; i + 4 <= count; i += 4)
        step(i, 4);
    if (i < count) step(i, count - i);
}

/// The colour with 255 in place of its alpha: what a blend with that alpha moves towards.
__m128i target(CColor c) {
    return _mm_setr_epi16(c.blue, c.green, c.red, 255, c.blue, c.green, c.red, 255);
}

// One rounding for alpha times coverage and one for the mix: off by at most half a level each.
__m128i mix(__m128i under, __m128i over, __m128i alpha) {
    return over255(
        _mm_add_epi16(_mm_mullo_epi16(over, alpha), _mm_mullo_epi16(under, complement(alpha))));
}

/// source * coverage + under * (1 - source alpha * coverage), everything premultiplied.
__m128i cover(__m128i under, __m128i source, __m128i coverage) {
    const __m128i alpha = over255(_mm_mullo_epi16(alphaOf(source), coverage));
    return over255(_mm_adds_epu16(_mm_mullo_epi16(source, coverage),
                                  _mm_mullo_epi16(under, complement(alpha))));
}

Four times(const Four& a, __m128i b) {
    return {over255(_mm_mullo_epi16(a.low, b)), over255(_mm_mullo_epi16(a.high, b))};
}

/// Rows of premultiplied source pixels; `coverageAt(i, n)` gives the coverage of pixels i to i + n.
template <class CoverageAt>
void blendRow(std::uint8_t* row, int count, const Pixel* source, CoverageAt coverageAt) {
    inFours(count, [&](int i, int n) {
        const Four s = widen(loadPixels(source + i, n));
        const Four d = widen(loadPixels(row + 4 * i, n));
        const Four c = coverageAt(i, n);
        storePixels(row + 4 * i,
                    narrow({cover(d.low, s.low, c.low), cover(d.high, s.high, c.high)}), n);
    });
}

template <class CoverageAt>
void addRow(std::uint8_t* row, int count, const Pixel* source, CoverageAt coverageAt) {
    inFours(count, [&](int i, int n) {
        const Four s = widen(loadPixels(source + i, n));
        const Four c = coverageAt(i, n);
        const __m128i sum = narrow(
            {over255(_mm_mullo_epi16(s.low, c.low)), over255(_mm_mullo_epi16(s.high, c.high))});
        storePixels(row + 4 * i, _mm_adds_epu8(loadPixels(row + 4 * i, n), sum), n);
    });
}

/// Of a byte mask over four pixels.
constexpr int kAlphaBytes = 0x8888;
constexpr int kAllBytes = 0xFFFF;

auto everywhere(std::uint8_t coverage) {
    const __m128i c = _mm_set1_epi16(coverage);
    return [c](int, int) { return Four{c, c}; };
}

auto each(const std::uint8_t* coverage) {
    return [coverage](int i, int n) { return loadCoverage(coverage + i, n); };
}

/// Coverage that changes from pixel to pixel.
void mixPixels(std::uint8_t* row, int count, CColor color, const std::uint8_t* coverage) {
    const int done = Wide::blend(row, count, color, coverage);
    row += 4 * done;
    count -= done;
    coverage += done;
    const __m128i over = target(color);
    const __m128i alpha = _mm_set1_epi16(color.alpha);
    inFours(count, [&](int i, int n) {
        if (isNothing(coverage + i, n)) return; // most of what an outline's rows hold
        Four a = loadCoverage(coverage + i, n);
        if (color.alpha != 255) a = times(a, alpha);
        const Four d = widen(loadPixels(row + 4 * i, n));
        storePixels(row + 4 * i, narrow({mix(d.low, over, a.low), mix(d.high, over, a.high)}), n);
    });
}

} // namespace

void blend(std::uint8_t* row, int count, CColor color) {
    const __m128i over = target(color);
    if (color.alpha == 255) {
        const __m128i pixels = _mm_packus_epi16(over, over);
        inFours(count, [&](int i, int n) { storePixels(row + 4 * i, pixels, n); });
        return;
    }
    const int done = Wide::blend(row, count, color);
    row += 4 * done;
    count -= done;
    const __m128i alpha = _mm_set1_epi16(color.alpha);
    const __m128i part = _mm_mullo_epi16(over, alpha);
    const __m128i rest = complement(alpha);
    inFours(count, [&](int i, int n) {
        const Four d = widen(loadPixels(row + 4 * i, n));
        storePixels(row + 4 * i,
                    narrow({over255(_mm_add_epi16(part, _mm_mullo_epi16(d.low, rest))),
                            over255(_mm_add_epi16(part, _mm_mullo_epi16(d.high, rest)))}),
                    n);
    });
}

void blend(std::uint8_t* row, int count, CColor color, const std::uint8_t* coverage) {
    constexpr int kRun = 16;
    int i = 0;
    for (; i + kRun <= count; i += kRun) {
        // Inside and outside a shape, coverage is the same for long runs: a plain blend or nothing.
        const std::uint8_t first = coverage[i];
        const __m128i run = _mm_loadu_si128(reinterpret_cast<const __m128i*>(coverage + i));
        const __m128i same = _mm_cmpeq_epi8(run, _mm_set1_epi8(static_cast<char>(first)));
        if (_mm_movemask_epi8(same) != kAllBytes)
            mixPixels(row + 4 * i, kRun, color, coverage + i);
        else if (first != 0)
            blend(row + 4 * i, kRun, color.withAlpha((first * color.alpha + 127) / 255));
    }
    mixPixels(row + 4 * i, count - i, color, coverage + i);
}

void blend(std::uint8_t* row, int count, const Pixel* source, std::uint8_t coverage) {
    if (coverage != 255) {
        blendRow(row, count, source, everywhere(coverage));
        return;
    }
    // Pictures are mostly opaque or see-through: neither needs arithmetic.
    const int done = Wide::blend(row, count, source);
    row += 4 * done;
    count -= done;
    source += done;
    inFours(count, [&](int i, int n) {
        const __m128i pixels = loadPixels(source + i, n);
        const int opaque = _mm_movemask_epi8(_mm_cmpeq_epi8(pixels, _mm_set1_epi8(-1)));
        if (n == 4 && (opaque & kAlphaBytes) == kAlphaBytes) {
            storePixels(row + 4 * i, pixels, n);
            return;
        }
        const int empty = _mm_movemask_epi8(_mm_cmpeq_epi8(pixels, _mm_setzero_si128()));
        if (empty == kAllBytes) return;
        const Four s = widen(pixels);
        const Four d = widen(loadPixels(row + 4 * i, n));
        const __m128i whole = _mm_set1_epi16(255);
        storePixels(row + 4 * i, narrow({cover(d.low, s.low, whole), cover(d.high, s.high, whole)}),
                    n);
    });
}

void blend(std::uint8_t* row, int count, const Pixel* source, const std::uint8_t* coverage) {
    blendRow(row, count, source, each(coverage));
}

void add(std::uint8_t* row, int count, CColor color) {
    const __m128i a = _mm_set1_epi16(color.alpha);
    const __m128i channels = over255(_mm_mullo_epi16(target(color), a));
    const __m128i pixels = _mm_packus_epi16(channels, channels);
    inFours(count, [&](int i, int n) {
        storePixels(row + 4 * i, _mm_adds_epu8(loadPixels(row + 4 * i, n), pixels), n);
    });
}

void add(std::uint8_t* row, int count, CColor color, const std::uint8_t* coverage) {
    const __m128i over = target(color);
    const __m128i alpha = _mm_set1_epi16(color.alpha);
    inFours(count, [&](int i, int n) {
        if (isNothing(coverage + i, n)) return;
        const Four sum = times(times(loadCoverage(coverage + i, n), alpha), over);
        storePixels(row + 4 * i, _mm_adds_epu8(loadPixels(row + 4 * i, n), narrow(sum)), n);
    });
}

void add(std::uint8_t* row, int count, const Pixel* source, std::uint8_t coverage) {
    addRow(row, count, source, everywhere(coverage));
}

void add(std::uint8_t* row, int count, const Pixel* source, const std::uint8_t* coverage) {
    addRow(row, count, source, each(coverage));
}

namespace {

__m128i loadPixel(const std::uint8_t* pixel) {
    std::int32_t value = 0;
    std::memcpy(&value, pixel, sizeof value);
    return _mm_cvtsi32_si128(value);
}

void storePixel(std::uint8_t* pixel, __m128i value) {
    const std::int32_t bytes = _mm_cvtsi128_si32(value);
    std::memcpy(pixel, &bytes, sizeof bytes);
}

/// `place(i)` is the byte offset of the i-th pixel.
template <class Place>
void blendSingle(std::uint8_t* pixels, int count, Place place, CColor color) {
    const __m128i zero = _mm_setzero_si128();
    const __m128i part = _mm_mullo_epi16(target(color), _mm_set1_epi16(color.alpha));
    const __m128i rest = _mm_set1_epi16(static_cast<short>(255 - color.alpha));
    for (int i = 0; i < count; ++i) {
        std::uint8_t* const pixel = pixels + place(i);
        const __m128i under = _mm_unpacklo_epi8(loadPixel(pixel), zero);
        const __m128i mixed = over255(_mm_add_epi16(part, _mm_mullo_epi16(under, rest)));
        storePixel(pixel, _mm_packus_epi16(mixed, mixed));
    }
}

} // namespace

void blendDown(std::uint8_t* pixel, std::ptrdiff_t stride, int rows, CColor color) {
    blendSingle(
        pixel, rows, [stride](int i) { return i * stride; }, color);
}

void blendEach(std::uint8_t* pixels, int count, const std::ptrdiff_t* offsets, CColor color) {
    blendSingle(
        pixels, count, [offsets](int i) { return offsets[i]; }, color);
}

void addEach(std::uint8_t* pixels, int count, const std::ptrdiff_t* offsets, CColor color) {
    const __m128i channels = over255(_mm_mullo_epi16(target(color), _mm_set1_epi16(color.alpha)));
    const __m128i light = _mm_packus_epi16(channels, channels);
    for (int i = 0; i < count; ++i) {
        std::uint8_t* const pixel = pixels + offsets[i];
        storePixel(pixel, _mm_adds_epu8(loadPixel(pixel), light));
    }
}

} // namespace Sorel::Pixels
