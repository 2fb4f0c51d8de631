// AGG's rasteriser feeding our spans.
#include "ShapeRaster.h"

#include <agg_gamma_functions.h>

namespace Sorel {

void ShapeRaster::antiAlias(bool on) {
    if (on == antiAlias_) return;
    antiAlias_ = on;
    if (on)
        rasterizer_.gamma(agg::gamma_none());
    else
        rasterizer_.gamma(agg::gamma_threshold(0.5));
}

void ShapeRaster::begin(const PixelBox& box) {
    rasterizer_.reset();
    rasterizer_.clip_box(box.left, box.top, box.right, box.bottom);
}

template <class Span>
void ShapeRaster::sweep(Span span) {
    if (!rasterizer_.rewind_scanlines()) return;
    scanline_.reset(rasterizer_.min_x(), rasterizer_.max_x());
    while (rasterizer_.sweep_scanline(scanline_)) {
        unsigned left = scanline_.num_spans();
        for (auto s = scanline_.begin(); left > 0; --left, ++s)
            span(s->x, scanline_.y(), s->len, s->covers);
    }
}

void ShapeRaster::paint(const Surface& surface, const Ink& ink) {
    // A negative length is a run of one coverage.
    if (ink.gradient == nullptr) {
        sweep([&](int x, int y, int length, const std::uint8_t* coverage) {
            if (length > 0) {
                surface.span(x, y, length, ink.color, coverage);
                return;
            }
            CColor color = ink.color;
            color.alpha = static_cast<std::uint8_t>(Pixels::multiply(color.alpha, *coverage));
            surface.span(x, y, -length, color);
        });
        return;
    }
    colors_.resize(static_cast<std::size_t>(surface.bounds().width()) + 2); // cells on the border
    sweep([&](int x, int y, int length, const std::uint8_t* coverage) {
        const int count = std::abs(length);
        ink.gradient->row(x, y, count, colors_.data());
        if (length > 0)
            surface.span(x, y, count, colors_.data(), coverage);
        else
            surface.span(x, y, count, colors_.data(), *coverage);
    });
}

void ShapeRaster::fill(const Figure& figure, const Surface& surface, const Ink& ink) {
    if (!figure.isSound() || surface.box().isEmpty()) return;
    begin(surface.box());
    addContours(figure);
    paint(surface, ink);
}

void ShapeRaster::cover(const Figure& figure, int width, int height, std::uint8_t* coverage) {
    begin({0, 0, width, height});
    addContours(figure);
    sweep([&](int x, int y, int length, const std::uint8_t* spanCoverage) {
        if (y < 0 || y >= height || x < 0) return;
        const int count = std::min(std::abs(length), width - x);
        for (int i = 0; i < count; ++i)
            coverage[y * width + x + i] = length > 0 ? spanCoverage[i] : *spanCoverage;
    });
}

void ShapeRaster::addContours(const Figure& figure) {
    for (const Figure::Contour& contour : figure.contours()) {
        if (contour.count < 3) continue;
        const auto points = figure.points(contour);
        rasterizer_.move_to_d(points[0].x, points[0].y);
        for (const CPoint p : points.subspan(1))
            rasterizer_.line_to_d(p.x, p.y);
        rasterizer_.close_polygon();
    }
}

void ShapeRaster::stroke(
    const Figure& figure, double width, Corners corners, const Surface& surface, const Ink& ink) {
    if (!figure.isSound() || surface.box().isEmpty() || !(width > 0.0)) return;
    begin(surface.box());
    for (const Figure::Contour& contour : figure.contours())
        strokeOutline(figure.points(contour), contour.closed, width, corners,
                      [this](double x, double y, bool starts) {
                          if (starts)
                              rasterizer_.move_to_d(x, y);
                          else
                              rasterizer_.line_to_d(x, y);
                      });
    paint(surface, ink);
}

} // namespace Sorel
