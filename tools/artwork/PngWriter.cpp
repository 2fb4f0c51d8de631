// The editor's picture loader premultiplies a colour c at alpha a as (c * a) >> 8, which would turn
// every opaque level but 0 into the one below and tint soft edges. So among the colours nearest to
// the wanted one, the file gets one from which the loader computes exactly the wanted premultiplied
// level, rounded.
#include "PngWriter.h"

#include <png.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <stdexcept>

namespace Artwork {

namespace {

// Levels that differ from a whole one by less are rounding errors of float, not gradients.
constexpr double kWhole = 1.0 / 512;

// 0 to 1, and evenly spread over any neighbourhood: the additive recurrence of the plastic number
// (M. Roberts, "The Unreasonable Effectiveness of Quasirandom Sequences", 2018).
// Each channel has its own phase, so that the three do not step together.
std::array<double, 3> dithersAt(int x, int y) {
    std::array<double, 3> values{};
    double phase = 0;
    for (double& value : values) {
        value = 0.7548776662466927 * x + 0.5698402909980532 * y + phase;
        value -= std::floor(value);
        phase += 1.0 / 3;
    }
    return values;
}

constexpr std::array<double, 3> kRounding = {0.5, 0.5, 0.5};

int opaqueLevel(double level, double dither) {
    const double nearest = std::round(level);
    if (std::abs(level - nearest) < kWhole) return static_cast<int>(nearest);
    return static_cast<int>(std::floor(level + dither));
}

// The colour byte nearest to `straight` for which (byte * alpha) >> 8 is `premultiplied`.
int colourByte(double straight, int premultiplied, int alpha) {
    if (alpha == 0) return 0;
    const auto firstAbove = [alpha](int level) { return (level * 256 + alpha - 1) / alpha; };
    const int low = firstAbove(premultiplied);
    const int high = std::max(low, firstAbove(premultiplied + 1) - 1);
    return std::min(255, std::clamp(static_cast<int>(std::lround(straight)), low, high));
}

// `dithers` holds one value from 0 to 1 a channel; 0.5 rounds.
void appendPixel(std::vector<png_byte>& bytes,
                 const Canvas::Pixel& pixel,
                 const std::array<double, 3>& dithers) {
    const int alpha = static_cast<int>(std::lround(pixel.alpha * 255));
    std::size_t channel = 0;
    for (const float value : {pixel.red, pixel.green, pixel.blue}) {
        const double level = std::clamp(double{value} * 255, 0.0, 255.0);
        const int premultiplied = alpha == 255 ? opaqueLevel(level, dithers[channel])
                                               : static_cast<int>(std::lround(level));
        const double straight = pixel.alpha > 0 ? level / double{pixel.alpha} : 0;
        bytes.push_back(
            static_cast<png_byte>(colourByte(straight, std::min(premultiplied, alpha), alpha)));
        ++channel;
    }
    bytes.push_back(static_cast<png_byte>(alpha));
}

} // namespace

void writePng(const Canvas& canvas, Rounding rounding, const std::string& path) {
    std::vector<png_byte> bytes;
    for (int y = 0; y < canvas.heightPx(); ++y)
        for (int x = 0; x < canvas.widthPx(); ++x)
            appendPixel(bytes, canvas.at(x, y),
                        rounding == Rounding::dithered ? dithersAt(x, y) : kRounding);

    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(canvas.widthPx());
    image.height = static_cast<png_uint_32>(canvas.heightPx());
    image.format = PNG_FORMAT_RGBA;
    if (png_image_write_to_file(&image, path.c_str(), 0, bytes.data(), 0, nullptr) == 0)
        throw std::runtime_error("cannot write " + path + ": " + image.message);
}

} // namespace Artwork
