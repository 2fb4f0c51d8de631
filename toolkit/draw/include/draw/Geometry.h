// Points, rectangles and colours of the toolkit. Pixels, y grows downwards.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace Sorel {

struct CPoint {
    double x = 0.0;
    double y = 0.0;

    friend bool operator==(const CPoint&, const CPoint&) = default;
    friend CPoint operator+(CPoint a, CPoint b) { return {a.x + b.x, a.y + b.y}; }
    friend CPoint operator-(CPoint a, CPoint b) { return {a.x - b.x, a.y - b.y}; }
};

/// The area from `left`, `top` up to but not including `right`, `bottom`.
struct CRect {
    double left = 0.0;
    double top = 0.0;
    double right = 0.0;
    double bottom = 0.0;

    static CRect ofSize(double x, double y, double width, double height) {
        return {x, y, x + width, y + height};
    }

    double width() const { return right - left; }
    double height() const { return bottom - top; }
    CPoint topLeft() const { return {left, top}; }
    CPoint centre() const { return {left + (right - left) * 0.5, top + (bottom - top) * 0.5}; }
    /// Width or height is not positive.
    bool isEmpty() const { return !(right > left && bottom > top); }
    /// All four edges count as inside.
    bool contains(CPoint p) const {
        return p.x >= left && p.x <= right && p.y >= top && p.y <= bottom;
    }
    bool contains(const CRect& other) const {
        return other.left >= left && other.right <= right && other.top >= top &&
               other.bottom <= bottom;
    }
    /// Touching edges count as overlap.
    bool touches(const CRect& other) const {
        return left <= other.right && other.left <= right && top <= other.bottom &&
               other.top <= bottom;
    }
    CRect moved(double dx, double dy) const {
        return {left + dx, top + dy, right + dx, bottom + dy};
    }
    CRect moved(CPoint by) const { return moved(by.x, by.y); }
    /// Smaller by `dx` and `dy` on each side; negative makes it larger.
    CRect inset(double dx, double dy) const {
        return {left + dx, top + dy, right - dx, bottom - dy};
    }
    /// The common part; where there is none, an empty rectangle (its width or height is 0).
    CRect intersected(const CRect& other) const {
        CRect r{std::max(left, other.left), std::max(top, other.top), std::min(right, other.right),
                std::min(bottom, other.bottom)};
        r.right = std::max(r.left, r.right);
        r.bottom = std::max(r.top, r.bottom);
        return r;
    }

    friend bool operator==(const CRect&, const CRect&) = default;
};

/// Straight (not premultiplied) colour, 0..255 each.
struct CColor {
    std::uint8_t red = 255;
    std::uint8_t green = 255;
    std::uint8_t blue = 255;
    std::uint8_t alpha = 255;

    CColor withAlpha(int newAlpha) const {
        return {red, green, blue, static_cast<std::uint8_t>(std::clamp(newAlpha, 0, 255))};
    }
    /// The same colour with `factor` (0..1) of its alpha.
    CColor faded(double factor) const {
        return withAlpha(static_cast<int>(std::lround(alpha * factor)));
    }
    /// This colour at 0, `other` at 1.
    CColor mixed(CColor other, double amount) const {
        const auto mix = [amount](std::uint8_t a, std::uint8_t b) {
            return static_cast<std::uint8_t>(
                std::clamp(std::lround(a + (b - a) * amount), 0L, 255L));
        };
        return {mix(red, other.red), mix(green, other.green), mix(blue, other.blue),
                mix(alpha, other.alpha)};
    }

    friend bool operator==(const CColor&, const CColor&) = default;
};

inline constexpr CColor kTransparentCColor{255, 255, 255, 0};
inline constexpr CColor kBlackCColor{0, 0, 0, 255};
inline constexpr CColor kWhiteCColor{255, 255, 255, 255};
inline constexpr CColor kGreyCColor{127, 127, 127, 255};
inline constexpr CColor kRedCColor{255, 0, 0, 255};
inline constexpr CColor kGreenCColor{0, 255, 0, 255};
inline constexpr CColor kBlueCColor{0, 0, 255, 255};
inline constexpr CColor kYellowCColor{255, 255, 0, 255};
inline constexpr CColor kMagentaCColor{255, 0, 255, 255};
inline constexpr CColor kCyanCColor{0, 255, 255, 255};

} // namespace Sorel
