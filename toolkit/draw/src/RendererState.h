// What a renderer remembers, and the tools it draws with.
#pragma once

#include "ColumnRaster.h"
#include "GlyphSource.h"
#include "ShapeRaster.h"
#include "Surface.h"

#include <optional>

namespace Sorel {

struct CRenderer::State {
    Surface surface;
    CRect clip;
    Paint paint;
    double lineWidth = 1.0;
    double masterAlpha = 1.0;

    TextStyle text;
    double textAngle = 0.0;
    HorizontalAlign horizontal = HorizontalAlign::kLeft;
    VerticalAlign vertical = VerticalAlign::kBaseline;

    ShapeRaster shapes;
    ColumnRaster columns;
    Figure figure;
    std::vector<CPoint> points;
    std::vector<Pixels::Pixel> rowColors;     ///< of one row of pixels
    std::vector<CColor> rowTints;             ///< one a row, for gradients that run down
    std::optional<GradientTable> columnTable; ///< for any other

    bool cannotDraw() const { return surface.box().isEmpty(); }
    Ink ink(CColor color) const { return {color.faded(masterAlpha), nullptr}; }
    /// Fills and strokes `figure` as the state says.
    void drawFigure(Corners corners);
    /// Fills whole pixels; needs no rasteriser.
    void fillBox(const PixelBox& box, CColor color) const;
    /// What paintColumns fills with; found once for all blocks of a shape.
    void prepareColumns(const CLinearGradient& gradient);
    void paintColumns();
    void fillFigure(const CLinearGradient& gradient);

    void drawMasks(double x, int baseline, std::string_view utf8, CColor color);
    void drawTurned(double x, double y, std::string_view utf8, double from);
};

/// True when all four edges lie between pixels.
inline bool isWholePixels(const CRect& r) {
    return std::floor(r.left) == r.left && std::floor(r.top) == r.top &&
           std::floor(r.right) == r.right && std::floor(r.bottom) == r.bottom;
}

} // namespace Sorel
