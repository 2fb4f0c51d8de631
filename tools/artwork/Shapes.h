// Outlines in a picture's own units, y downwards. Angles are degrees clockwise from 12 o'clock.
#pragma once

#include <agg_path_storage.h>

#include <initializer_list>

namespace Artwork {

using Path = agg::path_storage;

struct Point {
    double x;
    double y;
};

enum class Ends { butt, round };

/// The point at `angle` on a circle.
Point onCircle(Point centre, double radius, double angle);

Path rectangle(double x, double y, double width, double height, double cornerRadius = 0);
Path circle(Point centre, double radius);
Path ellipse(Point centre, double radiusX, double radiusY, double angle);
Path polygon(std::initializer_list<Point> points);

/// The area that a pen of `width` covers.
Path stroke(Path& line, double width, Ends ends = Ends::butt);
Path line(std::initializer_list<Point> points, double width, Ends ends = Ends::butt);
Path arc(Point centre, double radius, double from, double to, double width, Ends ends = Ends::butt);

/// A one-pixel outline lying just inside a rectangle.
Path outlineInside(double x, double y, double width, double height, double cornerRadius);

} // namespace Artwork
