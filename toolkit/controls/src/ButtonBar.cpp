#include "controls/ButtonBar.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace Sorel {

CButtonBar::CButtonBar(const CRect& size, CControlListener* listener, std::int32_t tag)
    : CControl(size, listener, tag) {
    setMax(static_cast<float>(kMaxButtons - 1));
}

bool CButtonBar::addButton(CBitmap* picture, double width, double height, double gap, double top) {
    if (count_ >= kMaxButtons || picture == nullptr || !picture->isLoaded()) return false;
    Button& button = buttons_[static_cast<std::size_t>(count_)];
    const double left =
        count_ == 0 ? 0.0 : buttons_[static_cast<std::size_t>(count_ - 1)].hitRect.right + gap;
    const double stateHeight = std::floor(picture->getHeight() * 0.5);
    button.picture = Counted<CBitmap>(picture);
    button.sourceRect = CRect::ofSize(0.0, 0.0, picture->getWidth(), stateHeight);
    button.width = width;
    button.height = height;
    button.gap = gap;
    button.hitRect = CRect::ofSize(left, top, width, height);
    button.drawRect = CRect::ofSize(left - std::floor((picture->getWidth() - width) * 0.5),
                                    top - std::floor((stateHeight - height) * 0.5),
                                    picture->getWidth(), stateHeight);
    ++count_;
    setDirty(true);
    return true;
}

CRect CButtonBar::hitRect(int index) const {
    if (index < 0 || index >= count_) return {};
    return buttons_[static_cast<std::size_t>(index)].hitRect.moved(getViewSize().topLeft());
}

void CButtonBar::setValue(double value) {
    if (value == getValue()) return;
    CControl::setValue(value);
    setDirty(true);
}

void CButtonBar::draw(CDrawContext& context) {
    setDirty(false);
    const CPoint origin = getViewSize().topLeft();
    const auto drawState = [&](const Button& button, bool on) {
        button.picture->draw(context, button.drawRect.moved(origin),
                             {0.0, on ? button.sourceRect.height() : 0.0});
    };
    // The chosen one last: its shadow and glow lie over its neighbours.
    for (int i = 0; i < count_; ++i)
        if (i != getIndex()) drawState(buttons_[static_cast<std::size_t>(i)], false);
    if (getIndex() >= 0 && getIndex() < count_)
        drawState(buttons_[static_cast<std::size_t>(getIndex())], true);
}

int CButtonBar::onMouseDown(CPoint where, std::int32_t* buttons) {
    if ((*buttons & Buttons::kLeft) == 0) return kMouseNotHandled;
    for (int i = 0; i < count_; ++i) {
        if (!hitRect(i).contains(where)) continue;
        setValue(i);
        reportValue();
        return kMouseHandledDone;
    }
    return kMouseNotHandled;
}

bool CButtonBar::isTypeOf(const char* name) const {
    return std::strcmp(name, "CButtonBar") == 0 || CControl::isTypeOf(name);
}

} // namespace Sorel
