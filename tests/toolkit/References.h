// Pictures made with libpng, and comparison with the approved ones in reference/.
#pragma once

#include "DrawFixture.h"

#include <array>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace Sorel {

/// How a test has a PNG encoded.
struct PngForm {
    int colorType = 6; ///< PNG_COLOR_TYPE_*
    int bitDepth = 8;
    bool interlaced = false;
    bool transparency = false;                          ///< with a tRNS chunk
    std::vector<std::array<std::uint8_t, 4>> palette{}; ///< red, green, blue, alpha
};

/// `sample(x, y, channel)` gives the values as they are stored, before packing into bytes.
std::vector<std::byte> encodePng(int width,
                                 int height,
                                 const PngForm& form,
                                 const std::function<unsigned(int, int, int)>& sample);

/// Compares with reference/NAME.png: every channel within `tolerance`. With ORVEL_NEW_REFERENCES
/// set in the environment the picture is written there instead; look at it before it is committed.
void expectLikeReference(CBitmap& picture, const std::string& name, int tolerance = 3);

/// Bytes as a stream.
class MemoryStream : public ISorelPNGStream {
  public:
    explicit MemoryStream(std::vector<std::byte> bytes)
        : bytes_(std::move(bytes)) {}
    bool read(void* buffer, std::size_t length) override;

  private:
    std::vector<std::byte> bytes_;
    std::size_t position_ = 0;
};

} // namespace Sorel
