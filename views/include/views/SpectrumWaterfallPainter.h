// The rows of the waterfall, straight into pixels.
#pragma once

#include "analysis/SpectrumWaterfall.h"
#include "draw/OSBitmap.h"
#include "views/WaterfallProjection.h"

#include <array>
#include <cstdint>

namespace Sorel {

/// Every row is an opaque curtain from its curve down to its own base line, newer ones before older
/// ones. Painted as polygons, most of it would be painted over again, at eight times the cost. Here
/// each column of pixels is walked twice: from the newest row back, to see what of each row stays
/// visible, and forth again, painting just that. Curves are covered by exact area and outlined by
/// a thin dark line, as a stroked polygon would be; SpectrumTest has that polygon painter to
/// compare.
/// Threads: GUI thread.
class SpectrumWaterfallPainter {
  public:
    /// `clip`: surface pixels that may change. The projection's room is in surface pixels, and the
    /// rows' heights run from 0 (+9 dB) to `fullHeight` (-72 dB).
    void paint(IOSBitmap& surface,
               const CRect& clip,
               const Orvel::SpectrumWaterfall& rows,
               double fullHeight,
               const WaterfallProjection& projection);

  private:
    static constexpr int kRows = Orvel::SpectrumWaterfall::kNumRows;
    static constexpr int kPoints = Orvel::SpectrumWaterfall::kNumColumns;

    /// A row on the surface.
    struct Row {
        float left = 0.0F;
        float right = 0.0F;
        float baseLeft = 0.0F;              ///< y of the base line at `left`
        float entry = 0.0F;                 ///< y of the curve where it enters the next column
        std::array<float, kPoints + 1> y{}; ///< of the curve, evenly from `left` to `right`

        float curveAt(float point) const;
    };
    /// What one column of pixels shows of a row.
    struct Piece {
        int row;
        int top;
        int bottom;
        float low;    ///< y of the curve's higher end in the column
        float height; ///< pixels down to its lower end
        float half;   ///< of the outline, up and down
        float base;   ///< y of the base line in the column's middle
        float weight; ///< of the column's width that the row covers
        float side;   ///< of it that the outline of the row's end covers
    };

    void place(const Orvel::SpectrumWaterfall& rows,
               double fullHeight,
               const WaterfallProjection& projection);
    int findPieces(int x, int top, int bottom);
    static void cutEnd(const Row& row, float left, Piece& piece);
    void paintPiece(std::uint32_t* column, std::ptrdiff_t stride, const Piece& piece) const;

    std::array<Row, kRows> rows_;
    std::array<Piece, kRows> pieces_;
    float pointsPerPixel_ = 0.0F;
    float basePerPixel_ = 0.0F;
    float colorsPerPixel_ = 0.0F;
};

} // namespace Sorel
