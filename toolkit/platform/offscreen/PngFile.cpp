// Writes pictures as PNG files.
#include "offscreen/PngFile.h"

#include <png.h>

#include <cstring>

namespace Sorel {

namespace {

/// Straight RGBA of a premultiplied pixel.
void unpremultiply(const std::uint8_t* bgra, std::uint8_t* rgba) {
    const unsigned alpha = bgra[3];
    const auto straight = [alpha](unsigned value) {
        return static_cast<std::uint8_t>(
            alpha == 0 ? 0 : std::min(255U, (value * 255U + alpha / 2U) / alpha));
    };
    rgba[0] = straight(bgra[2]);
    rgba[1] = straight(bgra[1]);
    rgba[2] = straight(bgra[0]);
    rgba[3] = bgra[3];
}

} // namespace

bool writePngFile(IOSBitmap& bitmap, const std::string& path, std::string* problem) {
    std::vector<std::uint8_t> pixels(static_cast<std::size_t>(bitmap.width) *
                                     static_cast<std::size_t>(bitmap.height) * 4);
    std::uint8_t* out = pixels.data();
    for (int y = 0; y < bitmap.height; ++y)
        for (int x = 0; x < bitmap.width; ++x, out += 4)
            unpremultiply(bitmap.getPixels() + y * bitmap.stride + x * 4, out);

    png_image image;
    std::memset(&image, 0, sizeof image);
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(bitmap.width);
    image.height = static_cast<png_uint_32>(bitmap.height);
    image.format = PNG_FORMAT_RGBA;
    if (png_image_write_to_file(&image, path.c_str(), 0, pixels.data(), 0, nullptr) != 0)
        return true;
    if (problem != nullptr) *problem = path + ": " + image.message;
    return false;
}

} // namespace Sorel
