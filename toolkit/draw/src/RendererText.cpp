// Text: placing of lines, masks of glyphs, turned outlines.
#include "RendererState.h"

namespace Sorel {

namespace {

constexpr double kLargestMask = 128.0; // pixels; larger letters are drawn as shapes, uncached
constexpr double kLargestText = 4096.0;
constexpr double kCentreToBaseline = 0.36; // of the em: half the height of capitals

} // namespace

void CRenderer::font(
    const char* name, std::span<const std::byte> data, double height, TextMode mode, double angle) {
    State& s = *state_;
    GlyphSource& glyphs = GlyphSource::instance();
    const auto lock = glyphs.lock();
    const bool usable = height > 0.0 && height <= kLargestText && std::isfinite(angle);
    s.text = {usable ? glyphs.face(name == nullptr ? "" : name, data) : nullptr, height, mode};
    s.textAngle = angle;
}

double CRenderer::fontHeight() const {
    return state_->surface.isAttached() ? GlyphSource::lineHeight(state_->text) : 0.0;
}

void CRenderer::textAlignment(HorizontalAlign horizontal, VerticalAlign vertical) {
    state_->horizontal = horizontal;
    state_->vertical = vertical;
}

double CRenderer::textWidth(std::string_view utf8) const {
    if (!state_->surface.isAttached()) return 0.0;
    GlyphSource& glyphs = GlyphSource::instance();
    const auto lock = glyphs.lock();
    return glyphs.layOut(state_->text, utf8, [](unsigned, double) {});
}

void CRenderer::text(double x, double y, std::string_view utf8) {
    State& s = *state_;
    if (s.cannotDraw() || s.text.face == nullptr || utf8.empty() || !s.paint.fills ||
        !std::isfinite(x) || !std::isfinite(y) || std::max(std::abs(x), std::abs(y)) > 1e6)
        return;
    GlyphSource& glyphs = GlyphSource::instance();
    const auto lock = glyphs.lock();
    double from = 0.0;
    if (s.horizontal != HorizontalAlign::kLeft)
        from = -glyphs.layOut(s.text, utf8, [](unsigned, double) {});
    if (s.horizontal == HorizontalAlign::kCentre) from *= 0.5;
    const double drop =
        s.vertical == VerticalAlign::kCentre ? kCentreToBaseline * s.text.height : 0.0;

    if (s.textAngle != 0.0 || s.text.height > kLargestMask) {
        s.drawTurned(x, y, utf8, from);
        return;
    }
    s.drawMasks(x + from, static_cast<int>(std::floor(y + drop + 0.5)), utf8,
                s.ink(s.paint.fill).color);
}

void CRenderer::State::drawMasks(double x, int baseline, std::string_view utf8, CColor color) {
    GlyphSource& glyphs = GlyphSource::instance();
    // One-bit letters cannot stand between pixels.
    const double steps = text.mode == TextMode::kMono ? 1.0 : 4.0;
    glyphs.layOut(text, utf8, [&](unsigned glyph, double pen) {
        const double snapped = std::floor((x + pen) * steps + 0.5) / steps;
        if (snapped > surface.box().right + 4.0 * text.height) return;
        const double pixel = std::floor(snapped);
        const GlyphMask& mask = glyphs.mask(text, glyph, static_cast<int>((snapped - pixel) * 4.0));
        for (int row = 0; row < mask.height; ++row)
            surface.span(static_cast<int>(pixel) + mask.left, baseline + mask.top + row, mask.width,
                         color, mask.row(row));
    });
}

/// Turned around x, y: the anchor of the alignment stays where it is.
void CRenderer::State::drawTurned(double x, double y, std::string_view utf8, double from) {
    GlyphSource& glyphs = GlyphSource::instance();
    const double drop = vertical == VerticalAlign::kCentre ? kCentreToBaseline * text.height : 0.0;
    const double cosine = std::cos(textAngle);
    const double sine = std::sin(textAngle);
    figure.clear();
    glyphs.layOut(text, utf8, [&](unsigned glyph, double pen) {
        const double along = from + pen;
        const CPoint stand{x + along * cosine - drop * sine, y + along * sine + drop * cosine};
        glyphs.outline(text, glyph, stand, textAngle, figure);
    });
    shapes.fill(figure, surface, ink(paint.fill));
}

} // namespace Sorel
