#include "Lettering.h"

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H

#include <cmath>
#include <stdexcept>

namespace Artwork {

struct Lettering::Faces {
    FT_Library library = nullptr;
    FT_Face regular = nullptr;
    FT_Face bold = nullptr;

    ~Faces() { FT_Done_FreeType(library); } // and its faces

    FT_Face at(Face face, double sizePx) const {
        FT_Face chosen = face == Face::bold ? bold : regular;
        if (FT_Set_Char_Size(chosen, 0, std::lround(sizePx * 64), 72, 72) != 0)
            throw std::runtime_error("the font has no such size");
        return chosen;
    }
};

namespace {

// From FreeType's outline, in 1/64 pixel and upwards, to a path in the picture's units.
struct Pen {
    Path& path;
    Point origin;
    double unit;
    Point last{};

    Point at(const FT_Vector* p) const {
        return {origin.x + static_cast<double>(p->x) * unit,
                origin.y - static_cast<double>(p->y) * unit};
    }
    void lineTo(Point to) {
        path.line_to(to.x, to.y);
        last = to;
    }
};

int moveTo(const FT_Vector* to, void* user) {
    Pen& pen = *static_cast<Pen*>(user);
    pen.last = pen.at(to);
    pen.path.close_polygon();
    pen.path.move_to(pen.last.x, pen.last.y);
    return 0;
}

int lineTo(const FT_Vector* to, void* user) {
    Pen& pen = *static_cast<Pen*>(user);
    pen.lineTo(pen.at(to));
    return 0;
}

// A parabola; in letters of this size, eight pieces cannot be told from it.
int conicTo(const FT_Vector* control, const FT_Vector* to, void* user) {
    constexpr int kPieces = 8;
    Pen& pen = *static_cast<Pen*>(user);
    const Point a = pen.last;
    const Point b = pen.at(control);
    const Point c = pen.at(to);
    for (int i = 1; i <= kPieces; ++i) {
        const double t = static_cast<double>(i) / kPieces;
        const double u = 1 - t;
        pen.lineTo({u * u * a.x + 2 * u * t * b.x + t * t * c.x,
                    u * u * a.y + 2 * u * t * b.y + t * t * c.y});
    }
    return 0;
}

// TrueType outlines have parabolas only.
int cubicTo(const FT_Vector*, const FT_Vector*, const FT_Vector*, void*) { return 1; }

constexpr FT_Outline_Funcs kPenFunctions = {moveTo, lineTo, conicTo, cubicTo, 0, 0};

// Small letters are fitted to the pixel rows by the font's own instructions, which know how to stay
// legible; from some size on these overdo it, and light hinting keeps the proportions.
constexpr int kSmallPx = 12;

FT_GlyphSlot loadGlyph(FT_Face face, char character) {
    const auto code = static_cast<FT_ULong>(static_cast<unsigned char>(character));
    const FT_Int32 hinting =
        face->size->metrics.y_ppem < kSmallPx ? FT_LOAD_TARGET_NORMAL : FT_LOAD_TARGET_LIGHT;
    if (FT_Load_Char(face, code, hinting | FT_LOAD_NO_BITMAP) != 0)
        throw std::runtime_error("the font cannot draw a letter");
    return face->glyph;
}

// Pixels; unhinted, so that a line is as wide as its letters say at any size.
double advanceOf(FT_GlyphSlot glyph) {
    return static_cast<double>(glyph->linearHoriAdvance) / 65536;
}

// How far a glyph at `xPx` must move for its left edge, mostly a stem, to fill a column of pixels.
double toWholePixel(FT_GlyphSlot glyph, double xPx) {
    FT_BBox box;
    FT_Outline_Get_CBox(&glyph->outline, &box);
    const double edge = xPx + static_cast<double>(box.xMin) / 64;
    return std::round(edge) - edge;
}

} // namespace

Lettering::Lettering(const std::string& fontFolder, double scale)
    : faces_(std::make_unique<Faces>())
    , scale_(scale) {
    const auto open = [this](const std::string& path, FT_Face& face) {
        if (FT_New_Face(faces_->library, path.c_str(), 0, &face) != 0)
            throw std::runtime_error("cannot read the font " + path);
    };
    if (FT_Init_FreeType(&faces_->library) != 0)
        throw std::runtime_error("FreeType does not start");
    open(fontFolder + "/LiberationSans-Regular.ttf", faces_->regular);
    open(fontFolder + "/LiberationSans-Bold.ttf", faces_->bold);
}

Lettering::~Lettering() = default;

Path Lettering::text(
    Face face, double size, double x, double y, std::string_view text, double spacing) {
    const FT_Face font = faces_->at(face, size * scale_);
    Path outline;
    for (const char character : text) {
        FT_GlyphSlot glyph = loadGlyph(font, character);
        const double start = spacing > 0 ? x + toWholePixel(glyph, x * scale_) / scale_ : x;
        Pen pen{outline, {start, y}, 1 / (64 * scale_)};
        if (FT_Outline_Decompose(&glyph->outline, &kPenFunctions, &pen) != 0)
            throw std::runtime_error("the font has outlines of a kind not expected");
        outline.close_polygon();
        x += advanceOf(glyph) / scale_ + spacing;
    }
    return outline;
}

double Lettering::width(Face face, double size, std::string_view text) {
    const FT_Face font = faces_->at(face, size * scale_);
    double total = 0;
    for (const char character : text)
        total += advanceOf(loadGlyph(font, character));
    return total / scale_;
}

} // namespace Artwork
