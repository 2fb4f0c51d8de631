#include "tree/View.h"

#include "draw/Bitmap.h"
#include "tree/Frame.h"
#include "tree/SorelineEditor.h"
#include "tree/ViewContainer.h"

#include <cstring>

namespace Sorel {

CView::CView(const CRect& size, CFrame* frame)
    : size_(size)
    , mouseableArea_(size) {
    setFrame(frame);
}

CView::CView(const CView& other)
    : CBaseObject(other)
    , size_(other.size_)
    , mouseableArea_(other.mouseableArea_)
    , mouseEnabled_(other.mouseEnabled_)
    , transparent_(other.transparent_)
    , wantsFocus_(other.wantsFocus_)
    , wantsWheel_(other.wantsWheel_)
    , background_(other.background_)
    , attributes_(other.attributes_)
    , viewTag_(other.viewTag_) {}

CView::~CView() {
    if (frame_ != nullptr && static_cast<CView*>(frame_) != this) frame_->release();
}

void CView::draw(CDrawContext& context) {
    if (background_) {
        if (transparent_)
            background_->drawTransparent(context, size_);
        else
            background_->draw(context, size_);
    }
    setDirty(false);
}

void CView::drawRect(CDrawContext& context, const CRect& /*updateRect*/) { draw(context); }

void CView::setDirty(bool state) {
    dirty_ = state;
    // What nobody can see is painted when it is shown.
    if (state && frame_ != nullptr && isVisible()) recordDirty();
}

void CView::recordDirty() {
    if (frame_ == nullptr) return;
    CRect visible;
    getVisibleSize(&visible);
    if (parentView_ != nullptr) visible = parentView_->insideToFrame(visible);
    frame_->addDirtyRect(visible, this);
}

void CView::collectDirtyMark() {
    if (dirtyMark_.load(std::memory_order_relaxed) &&
        dirtyMark_.exchange(false, std::memory_order_acquire))
        setDirty(true);
}

void CView::invalidRect(const CRect& rect) {
    if (!attached_ || !visible_) return;
    if (parentView_ != nullptr)
        parentView_->invalidRect(rect);
    else if (frame_ != nullptr && static_cast<CView*>(frame_) != this)
        frame_->invalidRect(rect);
}

void CView::setVisible(bool state) {
    const bool wasVisible = isVisible();
    visible_ = state;
    dirty_ = true;
    // A view that goes leaves a hole to be painted.
    if (wasVisible || isVisible()) recordDirty();
}

void CView::setActive(bool state) {
    active_ = state;
    setDirty(true);
}

int CView::onMouseDown(CPoint, std::int32_t*) { return 0; }
int CView::onMouseUp(CPoint, std::int32_t*) { return 0; }
int CView::onMouseMoved(CPoint, std::int32_t*) { return 0; }
int CView::onMouseEntered(CPoint, std::int32_t*) { return 0; }
int CView::onMouseExited(CPoint, std::int32_t*) { return 0; }

bool CView::hitTest(CPoint where, std::int32_t /*buttons*/) const {
    return mouseableArea_.contains(where);
}

bool CView::onWheel(CPoint where, int axis, float distance, std::int32_t* buttons) {
    return onWheel(where, axis == 0 ? -distance : distance, buttons);
}

bool CView::onWheel(CPoint, float, std::int32_t*) { return false; }

bool CView::onDrop(CDragContainer&, CPoint) { return false; }
void CView::onDragEnter(CDragContainer&, CPoint) {}
void CView::onDragLeave(CDragContainer&, CPoint) {}
void CView::onDragMove(CDragContainer&, CPoint) {}

int CView::onKeyDown(const KeyEvent&) { return kKeyNotHandled; }
int CView::onKeyUp(const KeyEvent&) { return kKeyNotHandled; }

void CView::setViewSize(const CRect& rect, bool invalidate) {
    if (invalidate && frame_ != nullptr && isVisible()) recordDirty();
    size_ = rect;
    if (invalidate) setDirty(true);
}

void CView::getVisibleSize(CRect* out) const {
    if (parentView_ != nullptr)
        parentView_->getVisibleSize(size_, out);
    else if (frame_ != nullptr)
        *out = size_.intersected(frame_->getViewSize());
    else
        *out = {};
}

CPoint CView::frameToLocal(CPoint point) const {
    return parentView_ != nullptr ? parentView_->frameToLocal(point) : point;
}

CPoint CView::localToFrame(CPoint point) const {
    return parentView_ != nullptr ? parentView_->localToFrame(point) : point;
}

void CView::setBackground(CBitmap* bitmap) {
    background_ = Counted<CBitmap>(bitmap);
    setDirty(true);
}

int CView::removed(CViewContainer* /*parent*/) {
    if (!attached_) return 0;
    if (CSorelineEditor* editor = getEditor()) editor->removeControl(this);
    if (frame_ != nullptr) frame_->onViewRemoved(this);
    parentView_ = nullptr;
    setFrame(nullptr);
    attached_ = false;
    return 1;
}

int CView::attached(CViewContainer* parent) {
    if (attached_) return 0;
    parentView_ = parent;
    if (parent != nullptr) setFrame(parent->getFrame());
    attached_ = true;
    return 1;
}

void CView::setFrame(CFrame* frame) {
    if (frame == frame_) return;
    const auto counts = [this](CFrame* f) {
        return f != nullptr && static_cast<CView*>(f) != this;
    };
    if (counts(frame)) frame->retain();
    CFrame* old = frame_;
    frame_ = frame;
    if (counts(old)) old->release();
}

CSorelineEditor* CView::getEditor() const {
    return frame_ != nullptr && static_cast<const CView*>(frame_) != this ? frame_->getEditor()
                                                                          : nullptr;
}

bool CView::isTypeOf(const char* name) const { return std::strcmp(name, "CView") == 0; }

bool CView::isVisible() const {
    for (const CView* view = this; view->parentView_ != nullptr; view = view->parentView_) {
        const CRect& parent = view->parentView_->getViewSize();
        const CRect inside{0.0, 0.0, parent.width(), parent.height()};
        if (!view->visible_ || inside.intersected(view->size_).isEmpty()) return false;
    }
    return true;
}

CPoint CView::drawScreenOrigin() {
    CPoint origin;
    if (frame_ != nullptr) frame_->getPosition(&origin.x, &origin.y);
    return origin;
}

IDrawOwner::Surface CView::drawSurface() {
    return frame_ != nullptr && static_cast<CView*>(frame_) != this ? frame_->drawSurface()
                                                                    : Surface{};
}

} // namespace Sorel
