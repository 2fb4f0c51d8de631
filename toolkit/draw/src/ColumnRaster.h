// Exact-area coverage of shapes that are narrow and steep: waveforms and curves.
#pragma once

#include "Surface.h"

#include <array>
#include <cstring>
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
    /// A piece of a thin line. Its ends are cut along columns or rows of pixels instead of across
    /// the line, which needs no joins: true outlines cost several times that, and up to
    /// kThickestHairline nobody sees the difference.
    void hairline(CPoint from, CPoint to, double width);
    static constexpr double kThickestHairline = 1.25; ///< pixels
    /// Calls `span(x, y, count, alpha)` for runs that are covered somewhere and
    /// `block(x, y, count, endY)` for rows in which the whole run is covered, and is empty
    /// afterwards. `alphaOf(y)`: what full coverage stands for in that row, 0..255. Scaling here,
    /// before rounding, saves the blend a step and a rounding.
    template <class AlphaOf, class Span, class Block>
    void sweep(AlphaOf alphaOf, Span span, Block block);

  private:
    static constexpr int kStripWidth = kLongestSpan;
    static constexpr int kSpareRows = 3; ///< an end in the last row writes two rows further

    struct Strip {
        int top = 0;
        int bottom = 0; ///< rows top..bottom - 1 hold something
    };

    /// One column of a strip: its sums, a strip's width from row to row, and the strip's marks.
    struct Target {
        float* sums;
        std::uint8_t* marks;
    };
    /// What changes where a steep line begins or ends: what it covers of a column, and half of what
    /// that grows by from row to row.
    struct Corner {
        double width = 0.0;
        double factor = 0.0;
    };
    /// The running sums down a strip, and what the last row made of them.
    struct Running {
        alignas(16) std::array<float, kStripWidth> slope{};
        alignas(16) std::array<float, kStripWidth> value{};
        alignas(16) std::array<std::uint8_t, kStripWidth> coverage;
        bool steady = true;  ///< rows without sums are as this one
        bool nothing = true; ///< is covered
        bool all = false;    ///< is covered
    };

    void piece(int column, double y0, double y1, double width);
    void steepHairline(CPoint top, CPoint bottom, double reach);
    void levelHairline(CPoint from, CPoint to, double width);
    void hair(int column, double y0, double y1, double length, double width);
    void hairFromAbove(Target target, const std::array<double, 4>& ends, double factor);
    static void withinRow(Target target, int row, double y0, double y1, double width);
    static void corner(Target target, double y, Corner change);
    static void rampEnd(Target target, double y, double factor);
    Target column(int x, int top, int bottom);
    static void takeRow(float* sums, Running& running);
    static void coverRow(const Running& running, float alpha, std::uint8_t* coverage);

    PixelBox area_;
    std::vector<float> sums_;         ///< strip by strip, row by row
    std::vector<std::uint8_t> marks_; ///< rows of strips that hold sums
    std::vector<Strip> strips_;
};

template <class AlphaOf, class Span, class Block>
void ColumnRaster::sweep(AlphaOf alphaOf, Span span, Block block) {
    const auto rows = static_cast<std::size_t>(area_.height() + kSpareRows);
    for (std::size_t s = 0; s < strips_.size(); ++s) {
        Strip& strip = strips_[s];
        Running running;
        const int x = area_.left + static_cast<int>(s) * kStripWidth;
        const int count = std::min(kStripWidth, area_.right - x);
        std::uint8_t* const marks = &marks_[s * rows];
        const int visible = std::min(strip.bottom, area_.height());
        for (int row = strip.top; row < strip.bottom;) {
            if (marks[row] != 0) {
                marks[row] = 0;
                takeRow(&sums_[(s * rows + static_cast<std::size_t>(row)) * kStripWidth], running);
            } else if (running.steady && (running.nothing || running.all)) {
                const void* const next = std::memchr(marks + row, 1, rows - std::size_t(row));
                const int end =
                    next == nullptr
                        ? strip.bottom
                        : static_cast<int>(static_cast<const std::uint8_t*>(next) - marks);
                if (running.all && row < visible)
                    block(x, area_.top + row, count, area_.top + std::min(end, visible));
                row = end;
                continue;
            } else if (!running.steady) {
                takeRow(nullptr, running);
            }
            if (row < visible && !running.nothing) {
                const int y = area_.top + row;
                coverRow(running, alphaOf(y), running.coverage.data());
                span(x, y, count, running.coverage.data());
            }
            ++row;
        }
        strip = {area_.height(), 0};
    }
}

} // namespace Sorel
