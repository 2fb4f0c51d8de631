// Colours and the ways in which an area can be filled.
#pragma once

#include <algorithm>
#include <cmath>
#include <functional>
#include <initializer_list>
#include <vector>

namespace Artwork {

/// Straight alpha, each channel 0 to 1. `Colour{r, g, b, a}` with the channels as levels: rgb().
struct Colour {
    float red = 0;
    float green = 0;
    float blue = 0;
    float alpha = 0;
};

/// Levels 0 to 255, as they stand in the colour tables.
constexpr Colour rgb(int red, int green, int blue, int alpha = 255) {
    return {static_cast<float>(red) / 255, static_cast<float>(green) / 255,
            static_cast<float>(blue) / 255, static_cast<float>(alpha) / 255};
}

/// The same colour at another alpha, 0 to 255.
constexpr Colour withAlpha(Colour colour, int alpha) {
    colour.alpha = static_cast<float>(alpha) / 255;
    return colour;
}

/// From `from` (t = 0) to `to` (t = 1).
constexpr Colour mixed(const Colour& from, const Colour& to, float t) {
    return {from.red + (to.red - from.red) * t, from.green + (to.green - from.green) * t,
            from.blue + (to.blue - from.blue) * t, from.alpha + (to.alpha - from.alpha) * t};
}

/// A colour for every point of a picture, in the picture's own units.
using Paint = std::function<Colour(double x, double y)>;

struct Stop {
    double at; // 0 to 1, ascending
    Colour colour;
};

inline Colour colourAt(const std::vector<Stop>& stops, double position) {
    const auto next = std::find_if(stops.begin(), stops.end(),
                                   [position](const Stop& stop) { return stop.at > position; });
    if (next == stops.begin()) return stops.front().colour;
    if (next == stops.end()) return stops.back().colour;
    const Stop& last = *(next - 1);
    return mixed(last.colour, next->colour,
                 static_cast<float>((position - last.at) / (next->at - last.at)));
}

inline Paint plain(const Colour& colour) {
    return [colour](double, double) { return colour; };
}

/// Light comes from straight above, so all linear gradients run downwards, from `top` to `bottom`.
inline Paint downwards(double top, double bottom, std::initializer_list<Stop> stops) {
    return [top, bottom, list = std::vector<Stop>(stops)](double, double y) {
        return colourAt(list, (y - top) / (bottom - top));
    };
}

inline Paint downwards(double top, double bottom, const Colour& first, const Colour& last) {
    return downwards(top, bottom, {{0, first}, {1, last}});
}

inline Paint
radial(double centreX, double centreY, double radius, std::initializer_list<Stop> stops) {
    return [=, list = std::vector<Stop>(stops)](double x, double y) {
        return colourAt(list, std::hypot(x - centreX, y - centreY) / radius);
    };
}

} // namespace Artwork
