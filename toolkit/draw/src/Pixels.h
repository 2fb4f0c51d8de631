// Blending of rows of pixels: the inner loops of everything that is drawn.
#pragma once

#include "draw/Geometry.h"

#include <cstddef>
#include <cstdint>

/// Shape:   `row` points at the first of `count` premultiplied pixels, blue first in memory.
/// Unit:    coverage and alpha 0..255; a Pixel is premultiplied, blue in the lowest byte.
/// Exact:   every channel is within 1 of the unrounded result.
namespace Sorel::Pixels {

using Pixel = std::uint32_t;

/// Rounded a * b / 255.
constexpr unsigned multiply(unsigned a, unsigned b) {
    const unsigned product = a * b + 128;
    return (product + (product >> 8)) >> 8;
}
constexpr Pixel premultiplied(CColor c) {
    return multiply(c.blue, c.alpha) | multiply(c.green, c.alpha) << 8 |
           multiply(c.red, c.alpha) << 16 | Pixel{c.alpha} << 24;
}

void blend(std::uint8_t* row, int count, CColor color);
void blend(std::uint8_t* row, int count, CColor color, const std::uint8_t* coverage);
void blend(std::uint8_t* row, int count, const Pixel* source, std::uint8_t coverage);
void blend(std::uint8_t* row, int count, const Pixel* source, const std::uint8_t* coverage);

/// One pixel in each of `rows` rows, which lie `stride` bytes apart.
void blendDown(std::uint8_t* pixel, std::ptrdiff_t stride, int rows, CColor color);

/// One pixel at each of `count` offsets, which are in bytes from `pixels`.
void blendEach(std::uint8_t* pixels, int count, const std::ptrdiff_t* offsets, CColor color);

/// The same, added to what is there and cut at 255.
void add(std::uint8_t* row, int count, CColor color);
void add(std::uint8_t* row, int count, CColor color, const std::uint8_t* coverage);
void add(std::uint8_t* row, int count, const Pixel* source, std::uint8_t coverage);
void add(std::uint8_t* row, int count, const Pixel* source, const std::uint8_t* coverage);

void addEach(std::uint8_t* pixels, int count, const std::ptrdiff_t* offsets, CColor color);

} // namespace Sorel::Pixels
