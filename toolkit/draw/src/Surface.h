// The pixels a renderer draws into, cut at its clip box.
#pragma once

#include "Pixels.h"
#include "draw/Renderer.h"

namespace Sorel {

/// Whole pixels, from `left`, `top` up to but not including `right`, `bottom`.
struct PixelBox {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    bool isEmpty() const { return left >= right || top >= bottom; }
    int width() const { return right - left; }
    int height() const { return bottom - top; }
    PixelBox intersected(const PixelBox& other) const {
        return {std::max(left, other.left), std::max(top, other.top), std::min(right, other.right),
                std::min(bottom, other.bottom)};
    }
};

/// The pixels that `rect` touches, kept within `limits`; empty for an empty or NaN rectangle.
inline PixelBox pixelsTouched(const CRect& rect, const PixelBox& limits) {
    if (rect.isEmpty()) return {};
    const auto inside = [](double v, int low, int high) {
        return static_cast<int>(std::clamp(v, double(low), double(high)));
    };
    return {inside(std::floor(rect.left), limits.left, limits.right),
            inside(std::floor(rect.top), limits.top, limits.bottom),
            inside(std::ceil(rect.right), limits.left, limits.right),
            inside(std::ceil(rect.bottom), limits.top, limits.bottom)};
}

class Surface {
  public:
    void attach(std::uint8_t* pixels, int width, int height, int stride) {
        const bool usable = pixels != nullptr && width > 0 && height > 0;
        pixels_ = usable ? pixels : nullptr;
        bounds_ = usable ? PixelBox{0, 0, width, height} : PixelBox{};
        stride_ = stride;
        box_ = bounds_;
        mode_ = BlendMode::kAlpha;
    }
    bool isAttached() const { return pixels_ != nullptr; }
    const PixelBox& bounds() const { return bounds_; }
    /// Drawing stays inside; empty when nothing can be drawn.
    const PixelBox& box() const { return box_; }
    void setClip(const CRect& rect) { box_ = pixelsTouched(rect, bounds_); }
    BlendMode mode() const { return mode_; }
    void setMode(BlendMode mode) { mode_ = mode; }

    /// Not clipped: inside `bounds()` only.
    std::uint8_t* at(int x, int y) const {
        return pixels_ + std::ptrdiff_t{y} * stride_ + std::ptrdiff_t{x} * 4;
    }

    // ---- Spans: `count` pixels from x, y on, clipped --------------------------------------------
    void span(int x, int y, int count, CColor color) const {
        int skip = 0;
        if (!clip(x, y, count, skip)) return;
        if (mode_ == BlendMode::kAdd)
            Pixels::add(at(x, y), count, color);
        else
            Pixels::blend(at(x, y), count, color);
    }
    void span(int x, int y, int count, CColor color, const std::uint8_t* coverage) const {
        int skip = 0;
        if (!clip(x, y, count, skip)) return;
        if (mode_ == BlendMode::kAdd)
            Pixels::add(at(x, y), count, color, coverage + skip);
        else
            Pixels::blend(at(x, y), count, color, coverage + skip);
    }
    /// `Coverage` is one byte for all or a pointer to one each.
    template <class Coverage>
    void span(int x, int y, int count, const Pixels::Pixel* source, Coverage coverage) const {
        int skip = 0;
        if (!clip(x, y, count, skip)) return;
        if constexpr (std::is_pointer_v<Coverage>) coverage += skip;
        if (mode_ == BlendMode::kAdd)
            Pixels::add(at(x, y), count, source + skip, coverage);
        else
            Pixels::blend(at(x, y), count, source + skip, coverage);
    }

    /// A column of `box()`, one pixel wide.
    void column(int x, int top, int bottom, CColor color) const {
        Pixels::blendDown(at(x, top), stride_, bottom - top, color);
    }

    /// Single pixels at byte offsets from `at(0, 0)`; not clipped.
    void points(int count, const std::ptrdiff_t* offsets, CColor color) const {
        if (mode_ == BlendMode::kAdd)
            Pixels::addEach(pixels_, count, offsets, color);
        else
            Pixels::blendEach(pixels_, count, offsets, color);
    }
    int stride() const { return stride_; }

  private:
    bool clip(int& x, int y, int& count, int& skip) const {
        if (y < box_.top || y >= box_.bottom) return false;
        skip = std::max(0, box_.left - x);
        x += skip;
        count = std::min(count - skip, box_.right - x);
        return count > 0;
    }

    std::uint8_t* pixels_ = nullptr;
    PixelBox bounds_;
    PixelBox box_;
    int stride_ = 0;
    BlendMode mode_ = BlendMode::kAlpha;
};

} // namespace Sorel
