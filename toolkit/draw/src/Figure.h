// Shapes as straight lines: what a path, a rectangle or a glyph is before it is filled or stroked.
#pragma once

#include "draw/Path.h"

#include <span>
#include <vector>

namespace Sorel {

/// Contours of points, in pixels. Reused from shape to shape, so that drawing allocates nothing.
/// Coordinates far outside any surface are drawn in; one that is no number spoils the figure, and a
/// spoilt figure draws nothing.
class Figure {
  public:
    struct Contour {
        std::size_t first = 0;
        std::size_t count = 0;
        bool closed = false;
    };

    void clear();
    void moveTo(double x, double y);
    void lineTo(double x, double y);
    void curveTo(CPoint control, CPoint end);
    void curveTo(CPoint control1, CPoint control2, CPoint end);
    void close();

    void addPath(const CPath& path);
    void addRect(const CRect& rect);
    void addRoundedRect(const CRect& rect, double radius);
    void addEllipse(CPoint centre, double radiusX, double radiusY);
    void addPolyline(std::span<const CPoint> points);

    bool isSound() const { return sound_; }
    std::span<const Contour> contours() const { return contours_; }
    std::span<const CPoint> points(const Contour& contour) const {
        return std::span(points_).subspan(contour.first, contour.count);
    }

  private:
    template <class Source>
    void addVertices(Source& source);

    std::vector<CPoint> points_;
    std::vector<Contour> contours_;
    bool sound_ = true;
};

} // namespace Sorel
