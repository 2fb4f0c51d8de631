// Curves and corners flattened with AGG.
#include "Figure.h"

#include <agg_curves.h>
#include <agg_ellipse.h>
#include <agg_rounded_rect.h>

namespace Sorel {

namespace {

constexpr double kFarAway = 1e6; // pixels; keeps AGG's arithmetic within its numbers
// AGG strays from a curve by up to 1/2 pixel over this, from a circle by 1/8 over this: 1/32 each.
constexpr double kCurveSmoothness = 16.0;
constexpr double kCircleSmoothness = 4.0;

} // namespace

void Figure::clear() {
    points_.clear();
    contours_.clear();
    sound_ = true;
}

void Figure::moveTo(double x, double y) {
    contours_.push_back({points_.size(), 0, false});
    lineTo(x, y);
}

void Figure::lineTo(double x, double y) {
    if (!std::isfinite(x) || !std::isfinite(y)) {
        sound_ = false;
        return;
    }
    if (contours_.empty() || contours_.back().closed)
        contours_.push_back({points_.size(), 0, false});
    points_.push_back({std::clamp(x, -kFarAway, kFarAway), std::clamp(y, -kFarAway, kFarAway)});
    ++contours_.back().count;
}

void Figure::close() {
    if (!contours_.empty()) contours_.back().closed = true;
}

template <class Source>
void Figure::addVertices(Source& source) {
    source.rewind(0);
    double x = 0.0;
    double y = 0.0;
    for (unsigned command = source.vertex(&x, &y); !agg::is_stop(command);
         command = source.vertex(&x, &y)) {
        if (agg::is_move_to(command))
            moveTo(x, y);
        else if (agg::is_vertex(command))
            lineTo(x, y);
        else if (agg::is_close(command))
            close();
    }
}

void Figure::curveTo(CPoint control, CPoint end) {
    if (points_.empty()) return;
    const CPoint from = points_.back();
    // A quadratic curve is the cubic one with its control points two thirds of the way.
    const auto towards = [](CPoint a, CPoint b) {
        return CPoint{a.x + (b.x - a.x) * (2.0 / 3.0), a.y + (b.y - a.y) * (2.0 / 3.0)};
    };
    curveTo(towards(from, control), towards(end, control), end);
}

void Figure::curveTo(CPoint control1, CPoint control2, CPoint end) {
    if (points_.empty()) return;
    for (const CPoint p : {control1, control2, end})
        if (!(std::abs(p.x) <= kFarAway && std::abs(p.y) <= kFarAway)) {
            lineTo(end.x, end.y);
            return;
        }
    const CPoint from = points_.back();
    agg::curve4_div curve;
    curve.approximation_scale(kCurveSmoothness);
    curve.init(from.x, from.y, control1.x, control1.y, control2.x, control2.y, end.x, end.y);
    curve.rewind(0);
    double x = 0.0;
    double y = 0.0;
    for (unsigned command = curve.vertex(&x, &y); !agg::is_stop(command);
         command = curve.vertex(&x, &y))
        if (agg::is_line_to(command)) lineTo(x, y);
}

void Figure::addPath(const CPath& path) {
    const CPoint* p = path.points().data();
    CPoint start;
    for (const CPath::Verb verb : path.verbs()) {
        // After a close the pen is back at the start of the contour.
        const bool reopens = verb != CPath::Verb::kMove && verb != CPath::Verb::kClose &&
                             !contours_.empty() && contours_.back().closed;
        if (reopens) moveTo(start.x, start.y);
        switch (verb) {
        case CPath::Verb::kMove:
            start = *p;
            moveTo(p->x, p->y);
            p += 1;
            break;
        case CPath::Verb::kLine:
            lineTo(p->x, p->y);
            p += 1;
            break;
        case CPath::Verb::kQuad:
            curveTo(p[0], p[1]);
            p += 2;
            break;
        case CPath::Verb::kCubic:
            curveTo(p[0], p[1], p[2]);
            p += 3;
            break;
        case CPath::Verb::kClose:
            close();
            break;
        }
    }
}

void Figure::addRect(const CRect& rect) {
    moveTo(rect.left, rect.top);
    lineTo(rect.right, rect.top);
    lineTo(rect.right, rect.bottom);
    lineTo(rect.left, rect.bottom);
    close();
}

void Figure::addRoundedRect(const CRect& rect, double radius) {
    const double largest = 0.5 * std::min(std::abs(rect.width()), std::abs(rect.height()));
    if (!(radius > 0.0) || !(largest > 0.0)) {
        addRect(rect);
        return;
    }
    agg::rounded_rect corners(rect.left, rect.top, rect.right, rect.bottom,
                              std::min(radius, largest));
    corners.approximation_scale(kCircleSmoothness);
    addVertices(corners);
}

void Figure::addEllipse(CPoint centre, double radiusX, double radiusY) {
    const double largest = std::max(std::abs(radiusX), std::abs(radiusY));
    if (!(largest <= kFarAway)) {
        sound_ = false;
        return;
    }
    agg::ellipse ellipse;
    ellipse.approximation_scale(kCircleSmoothness);
    ellipse.init(centre.x, centre.y, std::abs(radiusX), std::abs(radiusY));
    addVertices(ellipse);
}

void Figure::addPolyline(std::span<const CPoint> points) {
    if (points.empty()) return;
    moveTo(points[0].x, points[0].y);
    for (const CPoint p : points.subspan(1))
        lineTo(p.x, p.y);
}

} // namespace Sorel
