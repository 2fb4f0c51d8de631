// How a container finds the child that an event is for.
#include "platform/DragContainer.h"
#include "tree/Frame.h"
#include "tree/ViewContainer.h"

#include <algorithm>

namespace Sorel {

bool CViewContainer::takesMouse(const CView& child, CPoint where, std::int32_t buttons) const {
    return child.isVisible() && child.getMouseEnabled() && child.hitTest(where, buttons) &&
           child.getActive();
}

bool CViewContainer::hitTestChildren(CPoint where, std::int32_t buttons) const {
    const CPoint local = inside(where);
    return std::any_of(children_.begin(), children_.end(), [&](const CView* child) {
        return child->getMouseEnabled() && child->hitTest(local, buttons);
    });
}

int CViewContainer::onMouseDown(CPoint where, std::int32_t* buttons) {
    const CPoint local = inside(where);
    const auto held = holdChildren();
    for (auto child = held.rbegin(); child != held.rend(); ++child) {
        CView& view = **child;
        if (!isChild(&view) || !takesMouse(view, local, *buttons)) continue;
        if ((*buttons & Buttons::kAnyModifier) != 0 && view.offerModifierClick(*buttons))
            return kMouseHandled;
        const int answer = view.onMouseDown(local, buttons);
        if (answer == kMouseHandled) {
            if (isChild(&view)) mouseDownView_ = &view;
            return kMouseHandled;
        }
        if (answer == kMouseHandledDone) return kMouseHandledDone;
    }
    return kMouseNotHandled;
}

int CViewContainer::onMouseUp(CPoint where, std::int32_t* buttons) {
    const CPoint local = inside(where);
    if (mouseDownView_ == nullptr) mouseDownView_ = getViewAt(local);
    if (mouseDownView_ == nullptr) return kMouseNotHandled;
    const Counted<CView> view(mouseDownView_);
    view->onMouseUp(local, buttons);
    mouseDownView_ = nullptr;
    return kMouseHandled;
}

int CViewContainer::onMouseMoved(CPoint where, std::int32_t* buttons) {
    const CPoint local = inside(where);
    const Counted<CView> pressed(mouseDownView_);
    int answer = pressed ? pressed->onMouseMoved(local, buttons) : kMouseNotHandled;
    if (answer != kMouseHandled) {
        const auto held = holdChildren();
        for (auto child = held.rbegin(); child != held.rend(); ++child) {
            CView& view = **child;
            if (&view == pressed.get() || !isChild(&view) || !takesMouse(view, local, *buttons))
                continue;
            answer = view.onMouseMoved(local, buttons);
            if (answer == kMouseHandled) break;
        }
    }
    updateMouseOver(local, buttons);
    return answer == kMouseHandled ? kMouseHandled : kMouseNotHandled;
}

void CViewContainer::updateMouseOver(CPoint local, std::int32_t* buttons) {
    CView* under = getViewAt(local);
    if (under == mouseOverView_) return;
    const Counted<CView> old(mouseOverView_);
    const Counted<CView> now(under);
    mouseOverView_ = under;
    if (old) old->onMouseExited(local, buttons);
    if (now && mouseOverView_ == now.get()) now->onMouseEntered(local, buttons);
}

int CViewContainer::onMouseEntered(CPoint where, std::int32_t* buttons) {
    updateMouseOver(inside(where), buttons);
    return kMouseHandled;
}

int CViewContainer::onMouseExited(CPoint where, std::int32_t* buttons) {
    const Counted<CView> old(mouseOverView_);
    mouseOverView_ = nullptr;
    if (old) old->onMouseExited(inside(where), buttons);
    return 0;
}

bool CViewContainer::onWheel(CPoint where, int axis, float distance, std::int32_t* buttons) {
    const CPoint local = inside(where);
    const auto held = holdChildren();
    for (auto child = held.rbegin(); child != held.rend(); ++child) {
        CView& view = **child;
        if (!isChild(&view) || !view.getWantsWheel() || !takesMouse(view, local, *buttons))
            continue;
        if (!view.onWheel(local, axis, distance, buttons)) continue;
        if (isChild(&view)) mouseDownView_ = &view;
        return true;
    }
    return false;
}

bool CViewContainer::onWheel(CPoint where, float distance, std::int32_t* buttons) {
    return onWheel(where, 1, distance, buttons);
}

int CViewContainer::onKeyDown(const KeyEvent& key) {
    int answer = kKeyNotHandled;
    const auto held = holdChildren();
    for (auto child = held.rbegin(); child != held.rend() && answer == kKeyNotHandled; ++child)
        answer = (*child)->onKeyDown(key);
    return answer;
}

int CViewContainer::onKeyUp(const KeyEvent& key) {
    int answer = kKeyNotHandled;
    const auto held = holdChildren();
    for (auto child = held.rbegin(); child != held.rend() && answer == kKeyNotHandled; ++child)
        answer = (*child)->onKeyUp(key);
    return answer;
}

void CViewContainer::trackDrag(CDragContainer& drag, CPoint where, DragStep step) {
    if (getFrame() == nullptr) return;
    const CPoint local = inside(where);
    const Counted<CView> old(dragView_);
    const Counted<CView> now(getViewAt(local));
    if (step == DragStep::kMove && old.get() == now.get()) {
        if (now) now->onDragMove(drag, local);
        return;
    }
    if (old) old->onDragLeave(drag, local);
    dragView_ = now.get();
    if (now) now->onDragEnter(drag, local);
}

void CViewContainer::onDragEnter(CDragContainer& drag, CPoint where) {
    trackDrag(drag, where, DragStep::kEnter);
}

void CViewContainer::onDragMove(CDragContainer& drag, CPoint where) {
    trackDrag(drag, where, DragStep::kMove);
}

void CViewContainer::onDragLeave(CDragContainer& drag, CPoint where) {
    if (getFrame() == nullptr) return;
    const Counted<CView> old(dragView_);
    dragView_ = nullptr;
    if (old) old->onDragLeave(drag, inside(where));
}

bool CViewContainer::onDrop(CDragContainer& drag, CPoint where) {
    if (getFrame() == nullptr) return false;
    const CPoint local = inside(where);
    const Counted<CView> target(getViewAt(local));
    dragView_ = nullptr;
    return target && target->onDrop(drag, local);
}

void CViewContainer::onIdle() {
    for (const auto& child : holdChildren()) {
        child->collectDirtyMark();
        child->onIdle();
    }
}

} // namespace Sorel
