// How a text box looks while it is typed into, and which letter the mouse is on.
#include "controls/Palette.h"
#include "controls/Surfaces.h"
#include "controls/TextEdit.h"
#include "core/Utf8.h"
#include "tree/Frame.h"

#include <algorithm>
#include <cmath>

namespace Sorel {

namespace {
constexpr double kBaselineOfSize = 0.36; // below the middle, as in CDrawContext::drawString
constexpr double kCaretAbove = 0.95;     // of the size, above the baseline
constexpr double kCaretBelow = 0.3;
} // namespace

double Sorel_TextEdit::widthOf(CDrawContext& context, std::string_view text) const {
    return context.getStringWidth(text);
}

double Sorel_TextEdit::textLeft(CDrawContext& context, const IOSTextEdit::InFrame& state) {
    const CRect box = textRect();
    const double width = widthOf(context, state.text);
    const double caret = widthOf(context, std::string_view(state.text).substr(0, state.caret));
    if (width + 1.0 <= box.width()) {
        scroll_ = 0.0;
        switch (getHorizontalAlign()) {
        case HorizontalAlign::kLeft:
            return box.left;
        case HorizontalAlign::kRight:
            return std::floor(box.right - width - 1.0);
        case HorizontalAlign::kCentre:
            break;
        }
        return std::floor(box.left + (box.width() - width) / 2.0);
    }
    // Longer than the box: the caret stays in sight, and no gap opens at the end.
    scroll_ = std::clamp(scroll_, caret - box.width() + 1.0, caret);
    scroll_ = std::clamp(scroll_, 0.0, width + 1.0 - box.width());
    return box.left - std::floor(scroll_);
}

std::size_t Sorel_TextEdit::byteOffsetAt(double x) {
    const IOSTextEdit::InFrame* state = platformEdit_ ? platformEdit_->inFrame() : nullptr;
    if (state == nullptr) return 0;
    CDrawContext context(this);
    applyFont(context);
    const double left = textLeft(context, *state);
    const std::string_view text = state->text;
    std::size_t nearest = 0;
    double distance = std::abs(x - left);
    for (std::size_t at = 0; at < text.size();) {
        at = Core::Utf8::next(text, at);
        const double d = std::abs(x - left - widthOf(context, text.substr(0, at)));
        if (d > distance) break;
        distance = d;
        nearest = at;
    }
    return nearest;
}

void Sorel_TextEdit::draw(CDrawContext& context) {
    const IOSTextEdit::InFrame* state = platformEdit_ ? platformEdit_->inFrame() : nullptr;
    if (info_.drawsField) {
        drawField(context, getViewSize(), info_.fieldRadius);
        if (isEditing())
            drawFieldFocus(context, getViewSize(), info_.focusColor, info_.fieldRadius);
    } else {
        drawBack(context);
    }
    if (state != nullptr)
        drawEditing(context, *state);
    else if (!isEditing())
        drawText(context, getText());
    setDirty(false);
}

void Sorel_TextEdit::drawEditing(CDrawContext& context, const IOSTextEdit::InFrame& state) {
    applyFont(context);
    const CRect box = textRect();
    const CRect oldClip = context.getClipRect();
    context.setClipRect(oldClip.intersected(box.inset(-1.0, 0.0)));

    const double left = textLeft(context, state);
    const std::string_view text = state.text;
    const double size = context.getFontSize();
    const double baseline = std::round(getViewSize().centre().y + kBaselineOfSize * size);
    const double top = std::max(getViewSize().top + 1.0, baseline - std::round(kCaretAbove * size));
    const double bottom =
        std::min(getViewSize().bottom - 1.0, baseline + std::round(kCaretBelow * size));

    const auto xOf = [&](std::size_t at) {
        return std::round(left + widthOf(context, text.substr(0, at)));
    };
    if (state.selectionEnd > state.selectionStart) {
        context.setFillColor(info_.selectionColor);
        context.drawRect({xOf(state.selectionStart), top, xOf(state.selectionEnd), bottom},
                         kFilled);
    }
    context.setFontColor(info_.fontColor);
    context.drawStringAt(text, {left, baseline}, HorizontalAlign::kLeft);
    if (state.caretShown) {
        const double x = xOf(state.caret);
        context.setFillColor(info_.caretColor);
        context.drawRect({x, top, x + 1.0, bottom}, kFilled);
    }
    context.setClipRect(oldClip);
}

} // namespace Sorel
