// Exact-area coverage of shapes that are narrow and steep: waveforms and curves.
#pragma once

#include "Surface.h"

#include <array>
#include <vector>

namespace Sorel {

/// Coverage of polygons whose edges cross few columns each, at a cost that does not depend on how
/// many rows an edge crosses. A scanline rasteriser pays for every row; waveforms are made of edges
/// that cross a hundred.
///
/// How: within one column of pixels, what lies below an edge from y0 to y1 that is w wide covers
/// F(t) = w / (2 (y1 - y0)) * (r(t - y0)^2 - r(t - y1)^2), r(u) = max(0, u), of the column above t.
/// The coverage of the pixels is the difference of F from row to row, and its second difference is
/// zero but for three rows at each end of the edge. Those six numbers are all that is stored; two
/// running sums down the column give the coverage back.
///
/// Edges count with their sign (to the right positive), as in a non-zero winding fill: what a
/// closed outline runs around counts once, what it runs around twice is cut at full coverage.
class ColumnRaster {
  public:
    static constexpr int kLongestSpan = 16; ///< one cache line of sums

    /// Starts a shape; `area` is where coverage is wanted.
    void begin(const PixelBox& area);
    /// Finite coordinates, in pixels of the surface.
    void edge(CPoint from, CPoint to);
    /// Calls `span(x, y, count, alpha)` for runs that are covered somewhere, and is empty
    /// afterwards. `alphaOf(y)`: what full coverage stands for in that row, 0..255. Scaling here,
    /// before rounding, saves the blend a step and a rounding.
    template <class AlphaOf, class Span>
    void sweep(AlphaOf alphaOf, Span span);

  private:
    static constexpr int kStripWidth = kLongestSpan;
    static constexpr int kSpareRows = 3; ///< an end in the last row writes two rows further

    struct Strip {
        int top = 0;
        int bottom = 0; ///< rows top..bottom - 1 hold something
    };

    void piece(int column, double y0, double y1, double width);
    void withinRow(float* sums, int row, double y0, double y1, double width);
    void rampEnd(float* sums, double y, double factor);
    float* column(int x, int top, int bottom);
    /// False when nothing is covered.
    static bool
    coverRow(float* sums, float* slope, float* value, float alpha, std::uint8_t* coverage);

    PixelBox area_;
    std::vector<float> sums_; ///< strip by strip, row by row
    std::vector<Strip> strips_;
};

template <class AlphaOf, class Span>
void ColumnRaster::sweep(AlphaOf alphaOf, Span span) {
    const std::size_t rows = static_cast<std::size_t>(area_.height() + kSpareRows);
    for (std::size_t s = 0; s < strips_.size(); ++s) {
        Strip& strip = strips_[s];
        alignas(16) std::array<float, kStripWidth> slope{};
        alignas(16) std::array<float, kStripWidth> value{};
        alignas(16) std::array<std::uint8_t, kStripWidth> coverage;
        const int x = area_.left + static_cast<int>(s) * kStripWidth;
        const int count = std::min(kStripWidth, area_.right - x);
        for (int row = strip.top; row < strip.bottom; ++row) {
            float* const sums = &sums_[(s * rows + static_cast<std::size_t>(row)) * kStripWidth];
            const int y = area_.top + row;
            const float alpha = row < area_.height() ? alphaOf(y) : 0.0f;
            if (coverRow(sums, slope.data(), value.data(), alpha, coverage.data()))
                span(x, y, count, coverage.data());
        }
        strip = {area_.height(), 0};
    }
}

} // namespace Sorel
