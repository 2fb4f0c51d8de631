#include "controls/ParamDisplay.h"

#include "core/NumberText.h"

#include <cstring>

namespace Sorel {

CParamDisplay::CParamDisplay(const CRect& size,
                             CControlListener* listener,
                             std::int32_t tag,
                             CBitmap* background)
    : CControl(size, listener, tag, background)
    , font_(kDefaultFont) {}

void CParamDisplay::setHorizontalAlign(HorizontalAlign align) { store(align_, align); }

void CParamDisplay::setFont(CFontDesc* font, double size, std::int32_t style) {
    font_ = Counted<CFontDesc>(font);
    fontSize_ = size;
    fontStyle_ = style;
    setDirty(true);
}

void CParamDisplay::applyFont(CDrawContext& context) const {
    context.setFont(font_.get(), fontSize_, fontStyle_);
}

void CParamDisplay::drawBack(CDrawContext& context) {
    const CRect& rect = getViewSize();
    if (getBackground() != nullptr) {
        CControl::draw(context);
        return;
    }
    context.setDrawMode(0);
    if (!getTransparency() && (style_ & kNoBackground) == 0) {
        context.setFillColor(backColor_);
        context.drawRect(rect, kFilled);
    }
    if ((style_ & kNoFrame) == 0) {
        context.setLineWidth(1.0);
        context.setFrameColor(frameColor_);
        context.drawRect(rect.inset(0.5, 0.5), kStroked);
    }
}

void CParamDisplay::drawText(CDrawContext& context, const char* text) {
    if (text == nullptr || text[0] == 0) return;
    applyFont(context);
    if ((style_ & kShadowText) != 0) {
        context.setFontColor(shadowColor_);
        context.drawString(text, textRect().moved(1.0, 1.0), true, align_);
    }
    context.setFontColor(fontColor_);
    context.drawString(text, textRect(), true, align_);
}

void CParamDisplay::draw(CDrawContext& context) {
    drawBack(context);
    if (getParameter() != nullptr) {
        drawText(context, valueText(*getParameter()).c_str());
    } else {
        char number[32];
        Core::TextWriter(number, sizeof number).fixed(getValue(), 2);
        drawText(context, number);
    }
    setDirty(false);
}

bool CParamDisplay::isTypeOf(const char* name) const {
    return std::strcmp(name, "CParamDisplay") == 0 || CControl::isTypeOf(name);
}

CTextLabel::CTextLabel(const CRect& size, const char* text)
    : CParamDisplay(size)
    , text_(text != nullptr ? text : "") {
    setStyle(kNoFrame | kNoBackground);
    setMouseEnabled(false);
}

void CTextLabel::setText(const char* text) {
    text_ = text != nullptr ? text : "";
    setDirty(true);
}

void CTextLabel::draw(CDrawContext& context) {
    drawBack(context);
    drawText(context, text_.c_str());
    setDirty(false);
}

bool CTextLabel::isTypeOf(const char* name) const {
    return std::strcmp(name, "CTextLabel") == 0 || CParamDisplay::isTypeOf(name);
}

} // namespace Sorel
