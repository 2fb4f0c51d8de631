// Pictures onto the surface, as they are or scaled.
#include "RendererState.h"
#include "draw/OSBitmap.h"

#include <cstring>

namespace Sorel {

namespace {

/// The source pixels that one target pixel is made of, with weights that sum up to the part of the
/// target pixel that is covered.
struct Taps {
    int first = 0;
    std::vector<float> weights;
};

/// For each target pixel `from`..`to` of a picture scaled from source [s0, s1) to target [t0, t1).
/// Enlarged: between the two nearest pixel centres. Shrunk: the mean of the area.
std::vector<Taps> tapsFor(int from, int to, double t0, double t1, double s0, double s1, int size) {
    const double scale = (s1 - s0) / (t1 - t0);
    const int low = std::clamp(static_cast<int>(std::floor(s0)), 0, size - 1);
    const int high = std::clamp(static_cast<int>(std::ceil(s1)) - 1, low, size - 1);
    std::vector<Taps> all;
    for (int t = from; t < to; ++t) {
        const double a = std::max(t0, double(t));
        const double b = std::min(t1, t + 1.0);
        const double covered = std::max(0.0, b - a);
        const double start = s0 + (a - t0) * scale;
        const double end = s0 + (b - t0) * scale;
        Taps taps;
        if (scale > 1.0) {
            taps.first = std::clamp(static_cast<int>(std::floor(start)), low, high);
            const int last = std::clamp(static_cast<int>(std::ceil(end)) - 1, taps.first, high);
            for (int i = taps.first; i <= last; ++i)
                taps.weights.push_back(static_cast<float>(
                    std::max(1e-6, std::min(end, i + 1.0) - std::max(start, double(i)))));
        } else {
            const double centre = std::clamp((start + end) * 0.5 - 0.5, double(low), double(high));
            taps.first = static_cast<int>(centre);
            const auto part = static_cast<float>(centre - taps.first);
            taps.weights = {1.0f - part};
            if (taps.first < high) taps.weights.push_back(part);
        }
        float sum = 0.0f;
        for (const float w : taps.weights)
            sum += w;
        for (float& w : taps.weights)
            w *= static_cast<float>(covered) / sum;
        all.push_back(std::move(taps));
    }
    return all;
}

} // namespace

void CRenderer::copyImage(IOSBitmap& source,
                          int sourceX,
                          int sourceY,
                          int width,
                          int height,
                          int x,
                          int y,
                          double alpha) {
    const Surface& surface = state_->surface;
    const std::uint8_t* const pixels = source.getPixels();
    const auto coverage = static_cast<std::uint8_t>(
        std::lround(std::clamp(alpha * state_->masterAlpha, 0.0, 1.0) * 255.0));
    if (state_->cannotDraw() || pixels == nullptr || coverage == 0) return;

    // In 64 bits, so that no position can overflow.
    using Wide = std::int64_t;
    const PixelBox& box = surface.box();
    const Wide dx = Wide{x} - sourceX;
    const Wide dy = Wide{y} - sourceY;
    const Wide left = std::max({Wide{sourceX}, Wide{0}, box.left - dx});
    const Wide top = std::max({Wide{sourceY}, Wide{0}, box.top - dy});
    const Wide right = std::min({Wide{sourceX} + width, Wide{source.width}, box.right - dx});
    const Wide bottom = std::min({Wide{sourceY} + height, Wide{source.height}, box.bottom - dy});
    // The ground of the whole window is one of these.
    const bool copies = source.isOpaque && coverage == 255 && surface.mode() == BlendMode::kAlpha;
    for (Wide row = top; row < bottom && left < right; ++row) {
        const auto* const from =
            reinterpret_cast<const Pixels::Pixel*>(pixels + row * source.stride + left * 4);
        if (copies)
            std::memcpy(surface.at(static_cast<int>(left + dx), static_cast<int>(row + dy)), from,
                        static_cast<std::size_t>(right - left) * 4);
        else
            surface.span(static_cast<int>(left + dx), static_cast<int>(row + dy),
                         static_cast<int>(right - left), from, coverage);
    }
}

void CRenderer::stretchImage(IOSBitmap& source,
                             const CRect& sourceRect,
                             const CRect& destRect,
                             double alpha) {
    State& s = *state_;
    const std::uint8_t* const pixels = source.getPixels();
    const double strength = std::clamp(alpha * s.masterAlpha, 0.0, 1.0);
    const CRect from =
        sourceRect.intersected({0.0, 0.0, double(source.width), double(source.height)});
    const PixelBox box = pixelsTouched(destRect, s.surface.box());
    if (pixels == nullptr || from.isEmpty() || box.isEmpty() || !(strength > 0.0)) return;

    // Where the rest of the source rectangle would come to lie outside the picture, nothing is
    // drawn.
    const double perX = destRect.width() / sourceRect.width();
    const double perY = destRect.height() / sourceRect.height();
    const CRect to{destRect.left + (from.left - sourceRect.left) * perX,
                   destRect.top + (from.top - sourceRect.top) * perY,
                   destRect.right - (sourceRect.right - from.right) * perX,
                   destRect.bottom - (sourceRect.bottom - from.bottom) * perY};
    const PixelBox part = pixelsTouched(to, box);
    if (part.isEmpty()) return;
    const auto columns =
        tapsFor(part.left, part.right, to.left, to.right, from.left, from.right, source.width);
    const auto rows =
        tapsFor(part.top, part.bottom, to.top, to.bottom, from.top, from.bottom, source.height);

    s.rowColors.resize(static_cast<std::size_t>(part.width()));
    const auto scale = static_cast<float>(strength);
    for (int y = part.top; y < part.bottom; ++y) {
        const Taps& vertical = rows[static_cast<std::size_t>(y - part.top)];
        for (int x = part.left; x < part.right; ++x) {
            const Taps& horizontal = columns[static_cast<std::size_t>(x - part.left)];
            float sum[4] = {};
            for (std::size_t j = 0; j < vertical.weights.size(); ++j) {
                const std::uint8_t* p =
                    pixels +
                    static_cast<std::ptrdiff_t>(vertical.first + static_cast<int>(j)) *
                        source.stride +
                    std::ptrdiff_t{horizontal.first} * 4;
                for (const float weight : horizontal.weights)
                    for (float& channel : sum)
                        channel += *p++ * weight * vertical.weights[j];
            }
            Pixels::Pixel pixel = 0;
            for (int c = 0; c < 4; ++c)
                pixel |= static_cast<Pixels::Pixel>(std::min(sum[c] * scale, 255.0f) + 0.5f)
                         << (8 * c);
            s.rowColors[static_cast<std::size_t>(x - part.left)] = pixel;
        }
        s.surface.span(part.left, y, part.width(), s.rowColors.data(), std::uint8_t{255});
    }
}

} // namespace Sorel
