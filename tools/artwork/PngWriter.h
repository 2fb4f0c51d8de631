// Writes a canvas as a PNG of straight-alpha RGBA, 8 bits a channel.
#pragma once

#include "Canvas.h"

#include <string>

namespace Artwork {

enum class Rounding {
    nearest,
    dithered, // by less than one level, where the picture is opaque
};

/// The same canvas gives the same bytes on every run of one libpng.
/// Opaque pixels are dithered by less than one level, from a pattern fixed to the pixel, so that
/// long gradients show no steps; a colour that is a whole level stays exactly what it is. Fails:
/// std::runtime_error, and no file, when it cannot be written.
void writePng(const Canvas& canvas, Rounding rounding, const std::string& path);

} // namespace Artwork
