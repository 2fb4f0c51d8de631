#include "controls/DialTextEdit.h"

#include "controls/Palette.h"
#include "controls/Surfaces.h"

namespace Sorel {

namespace {
constexpr double kRadius = 2.0;

Sorel_TextEdit::CInfo infoFor(const CRect& size) {
    Sorel_TextEdit::CInfo info;
    info.size = size;
    info.fontSize = 10.0;
    info.fontColor = Palette::kValue;
    info.selectionColor = Palette::kGold.withAlpha(80);
    info.align = HorizontalAlign::kCentre;
    info.margin = 2.0;
    info.drawsField = false;
    return info;
}
} // namespace

CDialTextEdit::CDialTextEdit(const CRect& size,
                             CControlListener* listener,
                             Vardo::IPluginParameter& parameter)
    : Sorel_TextEdit(infoFor(size), listener, 0) {
    setText(valueText(parameter).c_str());
    offered_ = getText();
}

void CDialTextEdit::draw(CDrawContext& context) {
    context.setFillColor(Palette::kTypingBox);
    context.drawRoundRect(getViewSize(), static_cast<float>(kRadius), kFilled);
    drawFieldFocus(context, getViewSize(), Palette::kGold.withAlpha(190), kRadius);
    Sorel_TextEdit::draw(context);
}

} // namespace Sorel
