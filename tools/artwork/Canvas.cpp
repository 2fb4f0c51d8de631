#include "Canvas.h"

#include <agg_conv_transform.h>
#include <agg_rasterizer_scanline_aa.h>
#include <agg_scanline_u.h>

#include <cmath>

namespace Artwork {

namespace {

Canvas::Pixel times(const Canvas::Pixel& pixel, float factor) {
    return {pixel.red * factor, pixel.green * factor, pixel.blue * factor, pixel.alpha * factor};
}

Canvas::Pixel sum(const Canvas::Pixel& a, const Canvas::Pixel& b) {
    return {a.red + b.red, a.green + b.green, a.blue + b.blue, a.alpha + b.alpha};
}

// Calls visit(x, y, coverage) for every pixel that the area touches, inside width by height.
template <class Visit>
void rasterise(const Path& area, double scale, int width, int height, Visit visit) {
    Path path = area;
    agg::trans_affine toPixels = agg::trans_affine_scaling(scale);
    agg::conv_transform<Path> scaled(path, toPixels);
    agg::rasterizer_scanline_aa<> rasterizer;
    rasterizer.clip_box(0, 0, width, height);
    rasterizer.add_path(scaled);
    agg::scanline_u8 line;
    if (!rasterizer.rewind_scanlines()) return;
    line.reset(rasterizer.min_x(), rasterizer.max_x());
    while (rasterizer.sweep_scanline(line)) {
        const int y = line.y();
        auto span = line.begin();
        for (unsigned i = 0; i < line.num_spans(); ++i, ++span)
            for (int k = 0; k < span->len; ++k) {
                const int x = span->x + k;
                if (x < 0 || y < 0 || x >= width || y >= height) continue;
                visit(x, y, static_cast<float>(span->covers[k]) / 255);
            }
    }
}

std::vector<float> gaussian(double deviation) {
    const int reach = static_cast<int>(std::ceil(deviation * 3.5));
    std::vector<float> weights;
    float total = 0;
    for (int i = -reach; i <= reach; ++i) {
        const double t = i / deviation;
        weights.push_back(static_cast<float>(std::exp(-0.5 * t * t)));
        total += weights.back();
    }
    for (float& weight : weights)
        weight /= total;
    return weights;
}

} // namespace

Canvas::Canvas(double width, double height, double scale)
    : width_(static_cast<int>(std::lround(width * scale)))
    , height_(static_cast<int>(std::lround(height * scale)))
    , scale_(scale)
    , pixels_(static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_)) {}

void Canvas::fill(const Path& area, const Paint& paint) {
    rasterise(area, scale_, width_, height_, [&](int x, int y, float coverage) {
        const Colour colour = paint((x + 0.5) / scale_, (y + 0.5) / scale_);
        const float alpha = colour.alpha * coverage;
        const Pixel over{colour.red * alpha, colour.green * alpha, colour.blue * alpha, alpha};
        pixel(x, y) = sum(over, times(pixel(x, y), 1 - alpha));
    });
}

void Canvas::fillBlurred(const Path& area, const Colour& colour, double deviation) {
    draw(blurred(area, colour, deviation));
}

void Canvas::fillBlurred(const Path& area,
                         const Colour& colour,
                         double deviation,
                         const Frame& inside) {
    const Canvas mask = blurred(inside.area, {0, 0, 0, 1}, inside.deviation);
    Canvas layer = blurred(area, colour, deviation);
    for (std::size_t i = 0; i < pixels_.size(); ++i)
        layer.pixels_[i] = times(layer.pixels_[i], mask.pixels_[i].alpha);
    draw(layer);
}

Canvas Canvas::blurred(const Path& area, const Colour& colour, double deviation) const {
    Canvas layer = *this;
    std::fill(layer.pixels_.begin(), layer.pixels_.end(), Pixel());
    layer.fill(area, colour);
    if (deviation > 0) layer.blur(deviation);
    return layer;
}

void Canvas::draw(const Canvas& other, int topPx) {
    for (int y = 0; y < other.height_ && y + topPx < height_; ++y)
        for (int x = 0; x < std::min(width_, other.width_); ++x) {
            const Pixel& over = other.at(x, y);
            Pixel& below = pixel(x, y + topPx);
            below = sum(over, times(below, 1 - over.alpha));
        }
}

// A gaussian is separable: along the rows, then along the columns. Beyond the edges lies nothing.
void Canvas::blur(double deviation) {
    const std::vector<float> weights = gaussian(deviation * scale_);
    const int reach = static_cast<int>(weights.size() / 2);
    for (const bool alongRows : {true, false}) {
        const std::vector<Pixel> source = pixels_;
        for (int y = 0; y < height_; ++y)
            for (int x = 0; x < width_; ++x) {
                Pixel total;
                int offset = -reach;
                for (const float weight : weights) {
                    const int fromX = alongRows ? x + offset : x;
                    const int fromY = alongRows ? y : y + offset;
                    ++offset;
                    if (fromX < 0 || fromY < 0 || fromX >= width_ || fromY >= height_) continue;
                    total = sum(total, times(source[index(fromX, fromY)], weight));
                }
                pixel(x, y) = total;
            }
    }
}

} // namespace Artwork
