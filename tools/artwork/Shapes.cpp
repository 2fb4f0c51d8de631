#include "Shapes.h"

#include <agg_conv_stroke.h>

#include <cmath>
#include <numbers>

namespace Artwork {

namespace {
// Curves are cut into pieces of at most this, in degrees: at 40 pixels' radius the polygon stays
// within a thousandth of a pixel of the circle.
constexpr double kStep = 0.8;
constexpr double kRadians = std::numbers::pi / 180;

void addArc(Path& path, Point centre, double radius, double from, double to) {
    const int steps = std::max(1, static_cast<int>(std::ceil(std::abs(to - from) / kStep)));
    for (int i = 0; i <= steps; ++i) {
        const Point p = onCircle(centre, radius, from + (to - from) * i / steps);
        if (path.total_vertices() == 0)
            path.move_to(p.x, p.y);
        else
            path.line_to(p.x, p.y);
    }
}
} // namespace

Point onCircle(Point centre, double radius, double angle) {
    return {centre.x + radius * std::sin(angle * kRadians),
            centre.y - radius * std::cos(angle * kRadians)};
}

Path rectangle(double x, double y, double width, double height, double cornerRadius) {
    const double r = cornerRadius;
    if (r <= 0) return polygon({{x, y}, {x + width, y}, {x + width, y + height}, {x, y + height}});
    Path path;
    addArc(path, {x + r, y + r}, r, -90, 0);
    addArc(path, {x + width - r, y + r}, r, 0, 90);
    addArc(path, {x + width - r, y + height - r}, r, 90, 180);
    addArc(path, {x + r, y + height - r}, r, 180, 270);
    path.close_polygon();
    return path;
}

Path circle(Point centre, double radius) {
    Path path;
    addArc(path, centre, radius, 0, 360);
    path.close_polygon();
    return path;
}

Path ellipse(Point centre, double radiusX, double radiusY, double angle) {
    const double sine = std::sin(angle * kRadians);
    const double cosine = std::cos(angle * kRadians);
    Path path = circle({0, 0}, 1);
    for (unsigned i = 0; i < path.total_vertices(); ++i) {
        double x = 0;
        double y = 0;
        path.vertex(i, &x, &y);
        x *= radiusX;
        y *= radiusY;
        path.modify_vertex(i, centre.x + x * cosine - y * sine, centre.y + x * sine + y * cosine);
    }
    return path;
}

Path polygon(std::initializer_list<Point> points) {
    Path path;
    for (const Point& p : points) {
        if (path.total_vertices() == 0)
            path.move_to(p.x, p.y);
        else
            path.line_to(p.x, p.y);
    }
    path.close_polygon();
    return path;
}

Path stroke(Path& line, double width, Ends ends) {
    agg::conv_stroke<Path> pen(line);
    pen.width(width);
    pen.line_cap(ends == Ends::round ? agg::round_cap : agg::butt_cap);
    pen.line_join(ends == Ends::round ? agg::round_join : agg::miter_join);
    pen.approximation_scale(16);
    Path area;
    area.concat_path(pen);
    return area;
}

Path line(std::initializer_list<Point> points, double width, Ends ends) {
    Path path;
    for (const Point& p : points) {
        if (path.total_vertices() == 0)
            path.move_to(p.x, p.y);
        else
            path.line_to(p.x, p.y);
    }
    return stroke(path, width, ends);
}

Path arc(Point centre, double radius, double from, double to, double width, Ends ends) {
    Path path;
    addArc(path, centre, radius, from, to);
    return stroke(path, width, ends);
}

Path outlineInside(double x, double y, double width, double height, double cornerRadius) {
    Path edge = rectangle(x + 0.5, y + 0.5, width - 1, height - 1, cornerRadius - 0.5);
    return stroke(edge, 1);
}

} // namespace Artwork
