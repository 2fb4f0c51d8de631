// Children, coordinates, life in the tree.
#include "tree/ViewContainer.h"

#include "draw/Bitmap.h"
#include "tree/Frame.h"

#include <algorithm>
#include <cstring>

namespace Sorel {

const char* const CViewContainer::kMsgCheckIfViewContainer = "kMsgCheckIfViewContainer";
const char* const CViewContainer::kMsgLooseFocus = "LooseFocus";

CViewContainer::CViewContainer(const CRect& size, CFrame* frame, CBitmap* background)
    : CView(size, frame) {
    if (background != nullptr) setBackground(background);
}

CViewContainer::CViewContainer(const CViewContainer& other)
    : CView(other)
    , backgroundColor_(other.backgroundColor_)
    , backgroundOffset_(other.backgroundOffset_)
    , clipMode_(other.clipMode_) {
    for (const CView* child : other.children_)
        CViewContainer::addView(child->newCopy());
}

CViewContainer::~CViewContainer() { CViewContainer::removeAll(true); }

bool CViewContainer::addViewBefore(CView* view, CView* before) {
    if (view == nullptr || view->isAttached() || view->getParentView() != nullptr) return false;
    children_.insert(std::find(children_.begin(), children_.end(), before), view);
    view->setParentView(this);
    return true;
}

bool CViewContainer::addView(CView* view, const CRect& mouseableArea, bool mouseEnabled) {
    if (!addView(view)) return false;
    view->setMouseableArea(mouseableArea);
    view->setMouseEnabled(mouseEnabled);
    return true;
}

bool CViewContainer::addView(CView* view) {
    if (!addViewBefore(view, nullptr)) return false;
    if (isAttached()) {
        view->attached(this);
        view->setDirty(true);
    }
    return true;
}

void CViewContainer::forgetView(const CView* view) {
    if (mouseOverView_ == view) mouseOverView_ = nullptr;
    if (mouseDownView_ == view) mouseDownView_ = nullptr;
    if (dragView_ == view) dragView_ = nullptr;
}

bool CViewContainer::removeView(CView* view, bool withRelease) {
    const auto place = std::find(children_.begin(), children_.end(), view);
    if (place == children_.end()) {
        // A caller that does not know its children loses them all; none of them may point here.
        for (CView* child : children_) {
            forgetView(child);
            child->setParentView(nullptr);
        }
        children_.clear();
        return false;
    }
    const Counted<CView> held(view); // it may give up its last reference on its way out
    forgetView(view);
    if (isAttached()) {
        if (view->isVisible()) {
            CRect hole;
            view->getVisibleSize(&hole);
            invalidRect(hole);
        }
        view->removed(this);
    }
    children_.erase(std::find(children_.begin(), children_.end(), view));
    view->setParentView(nullptr);
    if (withRelease) view->release();
    return true;
}

bool CViewContainer::removeAll(bool withRelease) {
    // One by one from the back: a view that goes may look at its siblings.
    while (!children_.empty()) {
        CView* view = children_.back();
        forgetView(view);
        if (isAttached()) view->removed(this);
        children_.erase(std::find(children_.begin(), children_.end(), view));
        view->setParentView(nullptr);
        if (withRelease) view->release();
    }
    return true;
}

bool CViewContainer::isChild(const CView* view) const {
    return std::find(children_.begin(), children_.end(), view) != children_.end();
}

CView* CViewContainer::getView(int index) const {
    return index >= 0 && index < getNbViews() ? children_[static_cast<std::size_t>(index)]
                                              : nullptr;
}

CView* CViewContainer::getViewAt(CPoint where, bool deep) const {
    for (auto child = children_.rbegin(); child != children_.rend(); ++child) {
        if (!(*child)->isVisible() || !(*child)->hitTest(where, Buttons::kAny)) continue;
        if (!deep || !(*child)->isTypeOf("CViewContainer")) return *child;
        const auto* container = static_cast<const CViewContainer*>(*child);
        CView* inner = container->getViewAt(container->inside(where), true);
        return inner != nullptr ? inner : *child;
    }
    return nullptr;
}

CViewContainer* CViewContainer::getContainerAt(CPoint where, bool deep) {
    for (auto child = children_.rbegin(); child != children_.rend(); ++child) {
        if (!(*child)->isVisible() || !(*child)->getMouseableArea().contains(where) ||
            !(*child)->isTypeOf("CViewContainer"))
            continue;
        auto* container = static_cast<CViewContainer*>(*child);
        return deep ? container->getContainerAt(container->inside(where), true) : container;
    }
    return this;
}

std::vector<Counted<CView>> CViewContainer::holdChildren() const {
    std::vector<Counted<CView>> held;
    held.reserve(children_.size());
    for (CView* child : children_)
        held.emplace_back(child);
    return held;
}

int CViewContainer::notify(CBaseObject* sender, const char* message) {
    if (message == kMsgCheckIfViewContainer) return 1;
    for (const auto& child : holdChildren())
        if (child->notify(sender, message) == 1) return 1;
    return 0;
}

bool CViewContainer::advanceNextFocusView(CView* current, bool reverse) {
    std::vector<CView*> order(children_);
    if (reverse) std::reverse(order.begin(), order.end());
    auto from = order.begin();
    if (current != nullptr) {
        // The current one may sit deep inside a child.
        from = std::find_if(order.begin(), order.end(), [current](const CView* child) {
            for (const CView* v = current; v != nullptr; v = v->getParentView())
                if (v == child) return true;
            return false;
        });
        if (from != order.end()) {
            if (*from != current && (*from)->isTypeOf("CViewContainer") &&
                static_cast<CViewContainer*>(*from)->advanceNextFocusView(current, reverse))
                return true;
            ++from;
        } else {
            from = order.begin();
        }
    }
    for (; from != order.end(); ++from) {
        CView* child = *from;
        if (!child->isVisible()) continue;
        if (child->getWantsFocus() && child->getActive()) {
            if (getFrame() == nullptr) return false;
            getFrame()->setFocusView(child);
            return true;
        }
        if (child->isTypeOf("CViewContainer") &&
            static_cast<CViewContainer*>(child)->advanceNextFocusView(nullptr, reverse))
            return true;
    }
    return false;
}

void CViewContainer::setVisibleAll(bool state, bool recursive) {
    if (recursive) setChildrenVisible(state);
    CView::setVisible(state);
}

void CViewContainer::setChildrenVisible(bool state) {
    for (CView* child : children_)
        child->setVisible(state);
}

void CViewContainer::setVisible(bool state) {
    setChildrenVisible(state);
    CView::setVisible(state);
}

void CViewContainer::setViewSize(const CRect& rect, bool invalidate) {
    CView::setViewSize(rect, invalidate);
    invalid();
}

CPoint CViewContainer::frameToLocal(CPoint point) const {
    return CView::frameToLocal(point) - getViewSize().topLeft();
}

CPoint CViewContainer::localToFrame(CPoint point) const {
    return CView::localToFrame(point + getViewSize().topLeft());
}

int CViewContainer::attached(CViewContainer* parent) {
    if (isAttached()) return 0;
    if (parent != nullptr) setFrame(parent->getFrame());
    setParentView(parent);
    for (const auto& child : holdChildren())
        child->attached(this);
    return CView::attached(parent);
}

int CViewContainer::removed(CViewContainer* parent) {
    mouseOverView_ = mouseDownView_ = dragView_ = nullptr;
    for (const auto& child : holdChildren()) {
        child->removed(this);
        if (isChild(child.get())) child->setParentView(this); // still ours, in no tree
    }
    return CView::removed(parent);
}

void CViewContainer::takeFocus() {
    for (const auto& child : holdChildren())
        child->takeFocus();
}

void CViewContainer::looseFocus() {
    for (const auto& child : holdChildren())
        child->looseFocus();
}

bool CViewContainer::isTypeOf(const char* name) const {
    return std::strcmp(name, "CViewContainer") == 0 || CView::isTypeOf(name);
}

} // namespace Sorel
