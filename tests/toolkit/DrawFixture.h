// A canvas to draw on, and what tests ask of its pixels.
#pragma once

#include "draw/Bitmap.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

namespace Sorel {

struct Rgba {
    int red = 0;
    int green = 0;
    int blue = 0;
    int alpha = 0;
    friend bool operator==(const Rgba&, const Rgba&) = default;
};

inline void PrintTo(const Rgba& p, std::ostream* out) {
    *out << "(" << p.red << " " << p.green << " " << p.blue << " " << p.alpha << ")";
}

inline Rgba pixelOf(IOSBitmap& bitmap, int x, int y) {
    const std::uint8_t* const p = bitmap.getPixels() + y * bitmap.stride + x * 4;
    return {p[2], p[1], p[0], p[3]};
}

inline std::vector<std::uint8_t> pixelsOf(IOSBitmap& bitmap) {
    return {bitmap.getPixels(), bitmap.getPixels() + bitmap.byteSize};
}

/// Largest difference of any channel of any pixel.
inline int difference(IOSBitmap& a, IOSBitmap& b) {
    int largest = 0;
    for (std::int32_t i = 0; i < a.byteSize; ++i)
        largest = std::max(largest, std::abs(a.getPixels()[i] - b.getPixels()[i]));
    return largest;
}

/// A canvas of one opaque colour.
class Canvas : public CBitmap {
  public:
    Canvas(int width, int height, CColor ground = kBlackCColor)
        : CBitmap(width, height) {
        renderer().clear(ground);
        ground_ = {ground.red, ground.green, ground.blue, ground.alpha};
    }
    Rgba at(int x, int y) { return pixelOf(surface(), x, y); }

    /// Where something was drawn: whole pixels, empty (all 0) for nothing.
    struct Ink {
        int left = 0;
        int top = 0;
        int right = 0;
        int bottom = 0;
        long amount = 0; ///< sum of differences from the ground, in the green channel
    };
    Ink ink() {
        Ink ink{surface().width, surface().height, 0, 0, 0};
        for (int y = 0; y < surface().height; ++y)
            for (int x = 0; x < surface().width; ++x) {
                if (at(x, y) == ground_) continue;
                ink.left = std::min(ink.left, x);
                ink.top = std::min(ink.top, y);
                ink.right = std::max(ink.right, x + 1);
                ink.bottom = std::max(ink.bottom, y + 1);
                ink.amount += std::abs(at(x, y).green - ground_.green);
            }
        return ink.right == 0 ? Ink{} : ink;
    }

  private:
    Rgba ground_;
};

} // namespace Sorel
