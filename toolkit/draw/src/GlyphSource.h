// Faces and glyphs of the process, through FreeType.
#pragma once

#include "Figure.h"
#include "ShapeRaster.h"
#include "core/Utf8.h"
#include "draw/Renderer.h"

#include <cstddef>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

struct FT_LibraryRec_;
struct FT_FaceRec_;

namespace Sorel {

/// Where a line of text stands and what it is set in.
struct TextStyle {
    FT_FaceRec_* face = nullptr; ///< null draws nothing
    double height = 0.0;         ///< pixels, the em
    TextMode mode = TextMode::kOutline;
};

/// Coverage of one glyph. `left`, `top`: of its first pixel, from the pen's pixel and the baseline.
struct GlyphMask {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> coverage;

    const std::uint8_t* row(int y) const {
        return coverage.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(width);
    }
};

/// One for the process: FreeType's library, the faces by name and bytes, and masks of the glyphs
/// drawn lately. Advances are the font's own, unhinted, with its kerning, so that the width of a
/// text grows evenly with its size; every mask is made for the quarter of a pixel it stands on.
/// Threads: any; hold `lock()` around everything else.
class GlyphSource {
  public:
    static GlyphSource& instance();
    ~GlyphSource();
    GlyphSource(const GlyphSource&) = delete;
    GlyphSource& operator=(const GlyphSource&) = delete;

    std::unique_lock<std::mutex> lock() { return std::unique_lock(mutex_); }

    /// Null when the bytes are no font.
    FT_FaceRec_* face(const char* name, std::span<const std::byte> data);
    /// Ascent minus descent, pixels.
    static double lineHeight(const TextStyle& style);

    /// Calls `place(glyph, x)` with the pen position of each character from 0 on; gives the last.
    template <class Place>
    double layOut(const TextStyle& style, std::string_view utf8, Place place);
    /// `quarter` 0..3: how far right of the pixel's edge the pen stands. Valid until the next call.
    const GlyphMask& mask(const TextStyle& style, unsigned glyph, int quarter);
    /// The unhinted outline, standing on `pen`, turned by `angle` (radians, clockwise on screen).
    void outline(const TextStyle& style, unsigned glyph, CPoint pen, double angle, Figure& figure);

  private:
    struct Face {
        std::string name;
        std::span<const std::byte> data;
        FT_FaceRec_* face;
    };
    struct Key {
        FT_FaceRec_* face;
        std::uint32_t glyph;
        std::int32_t size; ///< 1/64 pixel
        std::int32_t mode;
        std::int32_t quarter;
        friend bool operator==(const Key&, const Key&) = default;
    };
    struct KeyHash {
        std::size_t operator()(const Key& key) const noexcept;
    };

    GlyphSource();
    static unsigned glyphOf(const TextStyle& style, char32_t character);
    static double advance(const TextStyle& style, unsigned previous, unsigned glyph);
    static double width(const TextStyle& style, unsigned glyph);
    GlyphMask make(const Key& key);
    GlyphMask rasterise(FT_FaceRec_* face);

    static constexpr std::size_t kMaxMasks = 4096; ///< some 100 bytes each at the sizes in use

    std::mutex mutex_;
    FT_LibraryRec_* library_ = nullptr;
    std::vector<Face> faces_;
    std::unordered_map<Key, GlyphMask, KeyHash> masks_;
    ShapeRaster raster_;
    Figure figure_;
};

template <class Place>
double GlyphSource::layOut(const TextStyle& style, std::string_view utf8, Place place) {
    double pen = 0.0;
    unsigned previous = 0;
    for (std::size_t at = 0; at < utf8.size();) {
        const auto [character, length] = Core::Utf8::decode(utf8, at);
        at += length;
        if (character < U' ') continue; // line breaks and the like have no shape
        const unsigned glyph = glyphOf(style, character);
        pen += advance(style, previous, glyph);
        place(glyph, pen);
        pen += width(style, glyph);
        previous = glyph;
    }
    return pen;
}

} // namespace Sorel
