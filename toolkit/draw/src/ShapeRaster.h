// Fills and strokes figures through AGG.
#pragma once

#include "Figure.h"
#include "Gradient.h"
#include "Surface.h"

#include <agg_rasterizer_scanline_aa.h>
#include <agg_scanline_p.h>
#include <agg_vcgen_stroke.h>

#include <vector>

namespace Sorel {

/// What a shape is painted with.
struct Ink {
    CColor color;
    const GradientTable* gradient = nullptr; ///< when set, in place of the colour
};

enum class Corners : std::uint8_t { kSharp, kRound };

/// Keeps AGG's memory from shape to shape. Anti-aliased shapes are filled by the non-zero rule.
class ShapeRaster {
  public:
    void antiAlias(bool on);
    void fill(const Figure& figure, const Surface& surface, const Ink& ink);
    /// `width` in pixels, butt ends.
    void stroke(const Figure& figure,
                double width,
                Corners corners,
                const Surface& surface,
                const Ink& ink);
    /// The outline of a stroke, as closed contours: `vertex(x, y, startsContour)`.
    template <class Vertex>
    void strokeOutline(
        std::span<const CPoint> points, bool closed, double width, Corners corners, Vertex vertex);
    /// Writes the coverage 0..255 of a filled figure into `width` * `height` bytes.
    void cover(const Figure& figure, int width, int height, std::uint8_t* coverage);

  private:
    void begin(const PixelBox& box);
    void addContours(const Figure& figure);
    template <class Span>
    void sweep(Span span);
    void paint(const Surface& surface, const Ink& ink);

    // Clips in double before it goes to whole numbers, so that far coordinates do no harm.
    agg::rasterizer_scanline_aa<agg::rasterizer_sl_clip_dbl> rasterizer_;
    agg::scanline_p8 scanline_;
    agg::vcgen_stroke stroker_;
    std::vector<Pixels::Pixel> colors_;
    bool antiAlias_ = true;
};

template <class Vertex>
void ShapeRaster::strokeOutline(
    std::span<const CPoint> points, bool closed, double width, Corners corners, Vertex vertex) {
    stroker_.width(width);
    // On thin lines a round corner cannot be told from a cut one, and its arcs cost twice the time.
    const agg::line_join_e round = width < 1.0 ? agg::bevel_join : agg::round_join;
    stroker_.line_join(corners == Corners::kSharp ? agg::miter_join : round);
    stroker_.remove_all();
    unsigned command = agg::path_cmd_move_to;
    for (const CPoint p : points) {
        stroker_.add_vertex(p.x, p.y, command);
        command = agg::path_cmd_line_to;
    }
    if (closed)
        stroker_.add_vertex(0.0, 0.0,
                            unsigned{agg::path_cmd_end_poly} | unsigned{agg::path_flags_close});

    stroker_.rewind(0);
    CPoint p;
    for (unsigned out = stroker_.vertex(&p.x, &p.y); !agg::is_stop(out);
         out = stroker_.vertex(&p.x, &p.y))
        if (agg::is_vertex(out)) vertex(p.x, p.y, agg::is_move_to(out));
}

} // namespace Sorel
