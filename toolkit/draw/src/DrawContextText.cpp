// Text in rectangles.
#include "draw/DrawContext.h"

namespace Sorel {

namespace {

/// Anchors of a line of text in a rectangle.
double anchorX(const CRect& rect, HorizontalAlign align) {
    switch (align) {
    case HorizontalAlign::kLeft:
        return rect.left;
    case HorizontalAlign::kRight:
        return rect.right;
    default:
        return rect.centre().x;
    }
}

} // namespace

void CDrawContext::setFont(CFontDesc* font, double size, std::int32_t style) {
    font_ = Counted<CFontDesc>(font);
    fontStyle_ = style;
    if (font == nullptr) {
        if (size != 0.0) fontSize_ = size;
        return;
    }
    font->style = style;
    if (size != 0.0) font->size = size;
    fontSize_ = font->size;
}

void CDrawContext::useFont() const {
    CFontDesc& font = font_ ? *font_ : defaultFont();
    const bool regular = fontStyle_ == kRegularFont;
    // The key of the cache goes by another rule than the bytes; the cache looks at both.
    const char* const key = fontStyle_ != kBoldFont ? font.firstName : font.secondName;
    renderer_->font(key, regular ? font.secondData : font.firstData, fontSize_, font.renderMode);
}

double CDrawContext::getStringWidth(std::string_view text) const {
    if (renderer_ == nullptr || surface_ == nullptr) return 0.0;
    useFont();
    return renderer_->textWidth(text);
}

/// Text is cut at the sides of its rectangle. Above and below it keeps its ascenders and descenders
/// when the rectangle is as high as the font size: a line is a tenth higher than its size and
/// stands on a whole pixel, and a box of 8 for text of 8 must not shave the g.
CRect CDrawContext::textClip(const CRect& rect) const {
    CRect clip = onSurface(rect);
    if (rect.height() >= fontSize_ - 0.5) {
        const double room = std::ceil(0.25 * fontSize_);
        clip.top -= room;
        clip.bottom += room;
    }
    return clipRect_.intersected(clip);
}

void CDrawContext::drawLines(std::string_view text,
                             const CRect& rect,
                             bool useFontColor,
                             HorizontalAlign align,
                             bool multiLine) {
    if (renderer_ == nullptr || surface_ == nullptr || text.empty()) return;
    const CRect savedClip = clipRect_;
    const CRect clip = textClip(rect);
    if (clip.isEmpty()) return;
    renderer_->clipBox(clip);
    const CRenderer::Paint savedPaint = renderer_->paint();
    if (useFontColor) {
        renderer_->noLine();
        renderer_->fillColor(fontColor_);
    }
    useFont();
    renderer_->textAlignment(align, VerticalAlign::kCentre);

    const double x = anchorX(rect, align) + offset_.x;
    double y = rect.centre().y + offset_.y;
    if (!multiLine) {
        renderer_->text(x, y, text);
    } else {
        const double lineHeight = std::floor(renderer_->fontHeight());
        const auto breaks = std::count(text.begin(), text.end(), '\n');
        y -= 0.5 * static_cast<double>(breaks) * lineHeight;
        for (;; y += lineHeight) {
            const std::size_t end = text.find('\n');
            renderer_->text(x, y, text.substr(0, end));
            if (end == std::string_view::npos) break;
            text.remove_prefix(end + 1);
        }
    }
    renderer_->setPaint(savedPaint);
    renderer_->clipBox(savedClip);
}

void CDrawContext::drawString(std::string_view text,
                              const CRect& rect,
                              bool useFontColor,
                              HorizontalAlign align) {
    drawLines(text, rect, useFontColor, align, false);
}

void CDrawContext::drawStringMultiLine(std::string_view text,
                                       const CRect& rect,
                                       bool useFontColor,
                                       HorizontalAlign align) {
    drawLines(text, rect, useFontColor, align, true);
}

void CDrawContext::drawStringAt(std::string_view text, CPoint baseline, HorizontalAlign align) {
    if (renderer_ == nullptr || surface_ == nullptr || text.empty()) return;
    const CRenderer::Paint savedPaint = renderer_->paint();
    renderer_->fillColor(fontColor_);
    useFont();
    renderer_->textAlignment(align, VerticalAlign::kBaseline);
    renderer_->text(baseline.x + offset_.x, baseline.y + offset_.y, text);
    renderer_->setPaint(savedPaint);
}

} // namespace Sorel
