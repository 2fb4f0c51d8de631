// Text as outlines, from the fonts that the editor itself carries.
#pragma once

#include "Shapes.h"

#include <memory>
#include <string>
#include <string_view>

namespace Artwork {

enum class Face { regular, bold };

/// Glyphs are hinted in one direction: their horizontals are brought onto the pixel rows of the
/// scale at which they are drawn, their widths and places stay exact. Fails: std::runtime_error
/// when a font cannot be read.
class Lettering {
  public:
    /// `fontFolder` holds LiberationSans-Regular.ttf and LiberationSans-Bold.ttf.
    Lettering(const std::string& fontFolder, double scale);
    ~Lettering();

    /// Outlines of ASCII text that starts at x on the baseline y. With a `spacing` behind each
    /// letter letters stand alone, and each is moved to where its left edge is sharp.
    Path
    text(Face face, double size, double x, double y, std::string_view text, double spacing = 0);

    /// The width of that text, without spacing.
    double width(Face face, double size, std::string_view text);

  private:
    struct Faces;

    std::unique_ptr<Faces> faces_;
    double scale_;
};

} // namespace Artwork
