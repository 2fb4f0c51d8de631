// The fonts of the toolkit.
#pragma once

#include "draw/BaseObject.h"
#include "draw/Renderer.h"

#include <cstddef>
#include <span>
#include <vector>

namespace Sorel {

enum FontStyle : std::int32_t { kBoldFont = 0, kRegularFont = 1 };

/// Two faces of one family and a size. Style 1 draws the second face (regular), every other style
/// the first (bold).
/// Threads: GUI thread. Bytes stay until the library is unloaded.
class CFontDesc : public CBaseObject {
  public:
    CFontDesc(double pointSize, TextMode mode)
        : size(pointSize)
        , renderMode(mode) {}

    double size;
    std::int32_t style = kBoldFont;
    std::span<const std::byte> firstData;
    const char* firstName = "";
    std::span<const std::byte> secondData;
    const char* secondName = "";
    TextMode renderMode;

    /// The bytes that `style` draws with.
    std::span<const std::byte> dataForStyle() const {
        return style == kRegularFont ? secondData : firstData;
    }
};

/// Size 12, outlines. Filled from the font archive ("arialbd.ttf", "arial.ttf") on first use.
CFontDesc& defaultFont();
/// Size 12, FreeType's grey bitmaps.
CFontDesc& defaultBitmapFont();

#define kDefaultFont (&::Sorel::defaultFont())
#define kDefaultBitmapFont (&::Sorel::defaultBitmapFont())

} // namespace Sorel
