// How a container paints, and what it tells its parents to paint again.
#include "draw/Bitmap.h"
#include "tree/Frame.h"
#include "tree/ViewContainer.h"

#include <algorithm>
#include <cmath>

namespace Sorel {

CPoint CViewContainer::paintOrigin() const {
    return {std::floor(getViewSize().left), std::floor(getViewSize().top)};
}

CRect CViewContainer::insideToFrame(CRect rect) const {
    for (const CViewContainer* view = this; view != nullptr; view = view->getParentView())
        rect = rect.moved(view->paintOrigin());
    return rect;
}

void CViewContainer::draw(CDrawContext& context) { drawRect(context, getViewSize()); }

void CViewContainer::drawRect(CDrawContext& context, const CRect& updateRect) {
    const CPoint oldOffset = context.offset();
    const CRect oldClip = context.getClipRect();
    const CPoint origin = paintOrigin();
    context.setOffset(oldOffset + origin);

    const CRect own{0.0, 0.0, getViewSize().width(), getViewSize().height()};
    const CRect update = updateRect.moved(-origin.x, -origin.y)
                             .intersected(oldClip.moved(-origin.x, -origin.y))
                             .intersected(own);
    if (!update.isEmpty()) {
        context.setClipRect(update);
        if (!isCoveredByChild(update)) drawBackgroundRect(context, update);
        paintChildren(context, update);
    }
    storeDirty(false);

    context.setOffset(oldOffset);
    context.setClipRect(oldClip);
}

void CViewContainer::paintChildren(CDrawContext& context, const CRect& update, const CView* end) {
    // By index: a child that draws may not change the list, but need not crash us if it does.
    for (std::size_t i = 0; i < children_.size(); ++i) {
        CView& child = *children_[i];
        if (&child == end) return;
        if (!checkUpdateChild(child, update)) continue;
        const CRect part = child.getViewSize().intersected(update);
        if (part.width() == 0.0 || part.height() == 0.0) continue;
        context.setClipRect(part);
        child.drawRect(context, update);
    }
}

bool CViewContainer::covers(const CRect& rect) const {
    const CPoint origin = paintOrigin();
    return getViewSize().contains(rect) && isCoveredByChild(rect.moved(-origin.x, -origin.y));
}

bool CViewContainer::isCoveredByChild(const CRect& update) const {
    return std::any_of(children_.begin(), children_.end(), [&](const CView* child) {
        return checkUpdateChild(*child, update) && child->getViewSize().contains(update) &&
               child->covers(update);
    });
}

void CView::drawGround(CDrawContext& context, const CRect& rect) const {
    if (CViewContainer* const parent = getParentView()) parent->drawBehind(context, rect, *this);
}

void CViewContainer::drawBehind(CDrawContext& context, const CRect& rect, const CView& child) {
    if (CViewContainer* const parent = getParentView()) {
        const CPoint offset = context.offset();
        const CPoint origin = paintOrigin();
        context.setOffset(offset - origin);
        parent->drawBehind(context, rect.moved(origin), *this);
        context.setOffset(offset);
    }
    const CRect clip = context.getClipRect();
    drawBackgroundRect(context, rect);
    paintChildren(context, rect, &child);
    context.setClipRect(clip);
}

void CViewContainer::drawBackgroundRect(CDrawContext& context, const CRect& rect) {
    if (CBitmap* picture = getBackground()) {
        const CPoint source = rect.topLeft() + backgroundOffset_;
        if (getTransparency())
            picture->drawTransparent(context, rect, source);
        else
            picture->draw(context, rect, source);
    } else if (!getTransparency()) {
        context.setFrameColor(backgroundColor_);
        context.setFillColor(backgroundColor_);
        context.drawRect(rect, kFilled);
    }
}

bool CViewContainer::checkUpdateChild(const CView& view, const CRect& rect) const {
    return view.checkUpdate(rect) && view.isVisible();
}

void CViewContainer::setBackgroundColor(CColor color) {
    backgroundColor_ = color;
    setDirty(true);
}

bool CViewContainer::isDirty() const {
    if (CView::isDirty()) return true;
    const CRect own{0.0, 0.0, getViewSize().width(), getViewSize().height()};
    for (const CView* child : children_)
        if (child->isDirty() && child->getVisible() &&
            !child->getViewSize().intersected(own).isEmpty())
            return true;
    return false;
}

void CViewContainer::invalid() {
    if (getVisible()) CView::invalidRect(getViewSize());
}

bool CViewContainer::invalidateDirtyChildren() {
    if (!getVisible()) return true;
    if (CView::isDirty()) {
        recordDirty();
        return true;
    }
    for (CView* child : children_) {
        if (!child->isDirty() || !child->getVisible()) continue;
        if (child->isTypeOf("CViewContainer"))
            static_cast<CViewContainer*>(child)->invalidateDirtyChildren();
        else
            child->setDirty(true);
    }
    return true;
}

void CViewContainer::invalidRect(const CRect& rect) {
    if (!getVisible()) return;
    const CRect inParent = rect.moved(paintOrigin()).intersected(getViewSize());
    if (!inParent.isEmpty()) CView::invalidRect(inParent);
}

void CViewContainer::getVisibleSize(const CRect& rect, CRect* out) const {
    const CPoint origin = getViewSize().topLeft();
    CRect visible = rect.moved(origin).intersected(getViewSize());
    if (getParentView() != nullptr)
        getParentView()->getVisibleSize(visible, &visible);
    else if (getFrame() != nullptr && getFrame() != this)
        visible = visible.intersected(getFrame()->getViewSize());
    *out = visible.moved(-origin.x, -origin.y);
}

} // namespace Sorel
