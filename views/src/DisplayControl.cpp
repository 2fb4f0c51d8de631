#include "views/DisplayControl.h"

#include "core/NumberText.h"

namespace Sorel {

namespace {
constexpr double kLabelX = 34.0;
constexpr double kLabelBaseline = 16.0;
constexpr double kLabelSize = 11.0;
} // namespace

IDisplayControl::IDisplayControl(const CRect& size, Orvel::COrvelScope* analyser)
    : CView(size)
    , analyser_(analyser) {
    setTransparency(true);
}

void IDisplayControl::setDrawCursor(bool on) {
    drawCursor_ = on;
    setDirty(true);
}

void IDisplayControl::setLabel(const char* text) {
    label_.assign(text);
    setDirty(true);
}

void IDisplayControl::draw(CDrawContext& context) {
    if (drawFrame_) DrawFrame(context);
    if (drawLabel_) DrawLabel(context);
    if (drawCursor_ && mouseInside_) DrawCursor(context, mouse_);
    setDirty(false);
}

void IDisplayControl::DrawFrame(CDrawContext& context) {
    context.setLineWidth(1.0);
    context.setFrameColor(colors().frame);
    context.drawRect(getViewSize().inset(0.5, 0.5), kStroked);
}

void IDisplayControl::DrawLabel(CDrawContext& context) {
    context.setFont(kDefaultFont, kLabelSize, kBoldFont);
    context.setFontColor(colors().text2);
    context.drawStringAt(label_.c_str(), getViewSize().topLeft() + CPoint{kLabelX, kLabelBaseline});
}

void IDisplayControl::DrawCursor(CDrawContext&, CPoint) {}

int IDisplayControl::onMouseDown(CPoint where, std::int32_t* buttons) {
    if ((*buttons & Buttons::kRight) == 0 || !contextMenu_) return kMouseNotHandled;
    contextMenu_(localToFrame(where));
    return kMouseHandledDone;
}

int IDisplayControl::onMouseMoved(CPoint where, std::int32_t* /*buttons*/) {
    const bool inside = getViewSize().contains(where);
    if (drawCursor_ && (inside || mouseInside_) && (where != mouse_ || inside != mouseInside_))
        setDirty(true);
    mouse_ = where;
    mouseInside_ = inside;
    return kMouseNotHandled;
}

int IDisplayControl::onMouseExited(CPoint /*where*/, std::int32_t* /*buttons*/) {
    if (drawCursor_ && mouseInside_) setDirty(true);
    mouseInside_ = false;
    return kMouseHandled;
}

std::string numberText(double value, int decimals, bool withSign) {
    char text[48];
    Core::TextWriter writer(text, sizeof text);
    if (withSign && !(value < 0.0)) writer.text("+");
    writer.fixed(value, decimals);
    return text;
}

} // namespace Sorel
