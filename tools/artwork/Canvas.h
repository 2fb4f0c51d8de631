// The picture that is being drawn: premultiplied float RGBA, quantised only when it is written.
#pragma once

#include "Paint.h"
#include "Shapes.h"

#include <cstddef>
#include <vector>

namespace Artwork {

/// Coordinates are a picture's own units, the pixels of scale 1; the canvas holds `scale` as many
/// pixels a side. Coverage is exact to 1/256, colours to float.
class Canvas {
  public:
    struct Pixel { // premultiplied
        float red = 0;
        float green = 0;
        float blue = 0;
        float alpha = 0;
    };

    Canvas(double width, double height, double scale);

    int widthPx() const { return width_; }
    int heightPx() const { return height_; }
    const Pixel& at(int x, int y) const { return pixels_[index(x, y)]; }

    void fill(const Path& area, const Paint& paint);
    void fill(const Path& area, const Colour& colour) { fill(area, plain(colour)); }

    /// Shadows and glows: lays `area` over the canvas, softened by a gaussian of this standard
    /// deviation.
    void fillBlurred(const Path& area, const Colour& colour, double deviation);

    /// What a shadow or glow is kept inside, itself softened.
    struct Frame {
        Path area;
        double deviation = 0;
    };
    void fillBlurred(const Path& area, const Colour& colour, double deviation, const Frame& inside);

    /// Lays another canvas of the same scale over this one, its top edge at row `topPx`.
    void draw(const Canvas& other, int topPx = 0);

  private:
    Canvas blurred(const Path& area, const Colour& colour, double deviation) const;
    void blur(double deviation);
    std::size_t index(int x, int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) +
               static_cast<std::size_t>(x);
    }
    Pixel& pixel(int x, int y) { return pixels_[index(x, y)]; }

    int width_;
    int height_;
    double scale_;
    std::vector<Pixel> pixels_;
};

} // namespace Artwork
