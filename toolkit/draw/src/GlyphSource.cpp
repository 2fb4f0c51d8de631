// FreeType for shapes and metrics, AGG for the coverage of outlines.
#include "GlyphSource.h"

#include <cstring>
#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_ADVANCES_H
#include FT_OUTLINE_H

namespace Sorel {

namespace {

constexpr double kUnit = 1.0 / 64.0; // of FreeType's coordinates, pixels

std::int32_t sizeOf(double height) { return static_cast<std::int32_t>(std::lround(height * 64.0)); }

double scaleOf(const TextStyle& style) { return style.height / style.face->units_per_EM; }

// Hinting, chosen by looking at 8 to 13 px, regular and bold, enlarged eight times. The font's own
// instructions, of which FreeType today obeys the vertical ones, give sharp figures that grow step
// by step: capitals of 6, 7, 7, 8, 9, 10 rows. The automatic "light" hinter makes them 5, 6, 8, 8,
// 9, 9 and small letters at 10 px as high as at 11: two sizes look alike and a third is squat; at 8
// px it joins the dot of an i to its stem. But up to 8 px four rows are too few for the
// instructions to keep the eye of an e open: small letters then keep their drawn shape; figures and
// capitals stay sharp.
constexpr std::int32_t kSmallSize = 8 * 64 + 32;

bool isSmallLetter(FT_Face face, unsigned glyph) {
    for (FT_ULong c = 'a'; c <= 'z'; ++c)
        if (FT_Get_Char_Index(face, c) == glyph) return true;
    return false;
}

FT_Int32 hinting(FT_Face face, unsigned glyph, std::int32_t size, TextMode mode) {
    if (mode == TextMode::kMono) return FT_LOAD_TARGET_MONO;
    return size < kSmallSize && isSmallLetter(face, glyph) ? FT_LOAD_NO_HINTING
                                                           : FT_LOAD_TARGET_NORMAL;
}

bool choose(FT_Face face, std::int32_t size) {
    return FT_Set_Char_Size(face, 0, size, 72, 72) == 0;
}

/// Draws FreeType's outlines (y upwards) into a figure.
struct OutlineWriter {
    Figure& figure;
    CPoint pen;
    double cosine;
    double sine;

    CPoint place(const FT_Vector& v) const {
        const double x = static_cast<double>(v.x) * kUnit;
        const double y = static_cast<double>(-v.y) * kUnit;
        return {pen.x + x * cosine - y * sine, pen.y + x * sine + y * cosine};
    }
    void write(FT_Outline& outline) {
        FT_Outline_Funcs calls{};
        calls.move_to = [](const FT_Vector* to, void* user) {
            auto& self = *static_cast<OutlineWriter*>(user);
            const CPoint p = self.place(*to);
            self.figure.close();
            self.figure.moveTo(p.x, p.y);
            return 0;
        };
        calls.line_to = [](const FT_Vector* to, void* user) {
            auto& self = *static_cast<OutlineWriter*>(user);
            const CPoint p = self.place(*to);
            self.figure.lineTo(p.x, p.y);
            return 0;
        };
        calls.conic_to = [](const FT_Vector* control, const FT_Vector* to, void* user) {
            auto& self = *static_cast<OutlineWriter*>(user);
            self.figure.curveTo(self.place(*control), self.place(*to));
            return 0;
        };
        calls.cubic_to = [](const FT_Vector* a, const FT_Vector* b, const FT_Vector* to,
                            void* user) {
            auto& self = *static_cast<OutlineWriter*>(user);
            self.figure.curveTo(self.place(*a), self.place(*b), self.place(*to));
            return 0;
        };
        FT_Outline_Decompose(&outline, &calls, this);
        figure.close();
    }
};

/// FreeType's own bitmap as bytes 0..255.
GlyphMask copied(FT_GlyphSlot slot) {
    const FT_Bitmap& bitmap = slot->bitmap;
    GlyphMask mask{slot->bitmap_left,
                   -slot->bitmap_top,
                   static_cast<int>(bitmap.width),
                   static_cast<int>(bitmap.rows),
                   {}};
    mask.coverage.resize(std::size_t{bitmap.width} * bitmap.rows);
    for (unsigned y = 0; y < bitmap.rows; ++y) {
        const unsigned char* const from = bitmap.buffer + std::ptrdiff_t{bitmap.pitch} * y;
        std::uint8_t* const to = mask.coverage.data() + std::size_t{y} * bitmap.width;
        for (unsigned x = 0; x < bitmap.width; ++x)
            to[x] = bitmap.pixel_mode == FT_PIXEL_MODE_MONO
                        ? ((from[x / 8] >> (7 - x % 8) & 1) != 0 ? 255 : 0)
                        : from[x];
    }
    return mask;
}

} // namespace

GlyphSource& GlyphSource::instance() {
    static GlyphSource source;
    return source;
}

GlyphSource::GlyphSource() {
    if (FT_Init_FreeType(&library_) != 0) library_ = nullptr;
}

GlyphSource::~GlyphSource() {
    if (library_ != nullptr) FT_Done_FreeType(library_); // with its faces
}

std::size_t GlyphSource::KeyHash::operator()(const Key& key) const noexcept {
    std::size_t hash = reinterpret_cast<std::uintptr_t>(key.face);
    for (const std::uint32_t part : {key.glyph, static_cast<std::uint32_t>(key.size),
                                     static_cast<std::uint32_t>(key.mode * 4 + key.quarter)})
        hash = (hash ^ part) * 0x9E3779B97F4A7C15u;
    return hash ^ hash >> 32;
}

FT_FaceRec_* GlyphSource::face(const char* name, std::span<const std::byte> data) {
    for (const Face& known : faces_)
        if (known.data.data() == data.data() && known.data.size() == data.size() &&
            known.name == name)
            return known.face;
    FT_Face face = nullptr;
    if (library_ != nullptr && !data.empty() &&
        FT_New_Memory_Face(library_, reinterpret_cast<const FT_Byte*>(data.data()),
                           static_cast<FT_Long>(data.size()), 0, &face) != 0)
        face = nullptr;
    if (face != nullptr && (!FT_IS_SCALABLE(face) || face->units_per_EM == 0)) {
        FT_Done_Face(face);
        face = nullptr;
    }
    faces_.push_back({name, data, face});
    return face;
}

double GlyphSource::lineHeight(const TextStyle& style) {
    if (style.face == nullptr) return 0.0;
    return (style.face->ascender - style.face->descender) * scaleOf(style);
}

unsigned GlyphSource::glyphOf(const TextStyle& style, char32_t character) {
    return style.face == nullptr ? 0 : FT_Get_Char_Index(style.face, character);
}

double GlyphSource::width(const TextStyle& style, unsigned glyph) {
    FT_Fixed units = 0;
    if (style.face == nullptr || FT_Get_Advance(style.face, glyph, FT_LOAD_NO_SCALE, &units) != 0)
        return 0.0;
    return static_cast<double>(units) * scaleOf(style);
}

double GlyphSource::advance(const TextStyle& style, unsigned previous, unsigned glyph) {
    FT_Vector kerning{0, 0};
    if (style.face == nullptr || previous == 0 || !FT_HAS_KERNING(style.face) ||
        FT_Get_Kerning(style.face, previous, glyph, FT_KERNING_UNSCALED, &kerning) != 0)
        return 0.0;
    return static_cast<double>(kerning.x) * scaleOf(style);
}

const GlyphMask& GlyphSource::mask(const TextStyle& style, unsigned glyph, int quarter) {
    const Key key{style.face, glyph, sizeOf(style.height), static_cast<std::int32_t>(style.mode),
                  quarter};
    if (const auto known = masks_.find(key); known != masks_.end()) return known->second;
    if (masks_.size() >= kMaxMasks) masks_.clear();
    return masks_.emplace(key, make(key)).first->second;
}

GlyphMask GlyphSource::make(const Key& key) {
    FT_Face face = key.face;
    const auto mode = static_cast<TextMode>(key.mode);
    if (!choose(face, key.size) ||
        FT_Load_Glyph(face, key.glyph,
                      hinting(face, key.glyph, key.size, mode) | FT_LOAD_NO_BITMAP) != 0 ||
        face->glyph->format != FT_GLYPH_FORMAT_OUTLINE)
        return {};
    FT_Outline_Translate(&face->glyph->outline, key.quarter * 16, 0);
    if (mode == TextMode::kOutline) return rasterise(face);
    const FT_Render_Mode render =
        mode == TextMode::kMono ? FT_RENDER_MODE_MONO : FT_RENDER_MODE_NORMAL;
    if (FT_Render_Glyph(face->glyph, render) != 0) return {};
    return copied(face->glyph);
}

GlyphMask GlyphSource::rasterise(FT_FaceRec_* face) {
    FT_BBox box;
    FT_Outline_Get_CBox(&face->glyph->outline, &box);
    GlyphMask mask;
    mask.left = static_cast<int>(box.xMin >> 6);
    mask.top = static_cast<int>(-box.yMax >> 6);
    // Whole groups of four pixels, as they are blended.
    mask.width = (static_cast<int>((box.xMax + 63) >> 6) - mask.left + 3) & ~3;
    mask.height = static_cast<int>((-box.yMin + 63) >> 6) - mask.top;
    if (mask.width <= 0 || mask.height <= 0) return {};

    figure_.clear();
    const CPoint origin{double(-mask.left), double(-mask.top)};
    OutlineWriter{figure_, origin, 1.0, 0.0}.write(face->glyph->outline);
    mask.coverage.resize(static_cast<std::size_t>(mask.width) *
                         static_cast<std::size_t>(mask.height));
    raster_.cover(figure_, mask.width, mask.height, mask.coverage.data());
    return mask;
}

void GlyphSource::outline(
    const TextStyle& style, unsigned glyph, CPoint pen, double angle, Figure& figure) {
    if (style.face == nullptr || !choose(style.face, sizeOf(style.height)) ||
        FT_Load_Glyph(style.face, glyph, FT_LOAD_NO_HINTING | FT_LOAD_NO_BITMAP) != 0 ||
        style.face->glyph->format != FT_GLYPH_FORMAT_OUTLINE)
        return;
    OutlineWriter{figure, pen, std::cos(angle), std::sin(angle)}.write(style.face->glyph->outline);
}

} // namespace Sorel
