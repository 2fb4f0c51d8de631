// Life of a frame, focus, modal view, and the small questions to the platform.
#include "tree/Frame.h"

#include "tree/SorelineEditor.h"

#include <cstring>

namespace Sorel {

namespace {
// Keeps a focus change from starting another one; the GUI thread's.
bool focusChanging = false;
} // namespace

CFrame::CFrame(const CRect& size,
               void* parentWindow,
               CSorelineEditor* editor,
               const std::string& title)
    : CViewContainer(size)
    , editor_(editor) {
    storeAttached(true);
    storeFrameUncounted(this);
    storeDirty(true);
    platformFrame_ =
        Counted<IFrame>::adopt(platform().createFrame(*this, size, parentWindow, title));
    createSurface();
}

CFrame::~CFrame() { close(); }

void CFrame::close() {
    if (closed_) return;
    closed_ = true;
    focusView_ = nullptr;
    setModalView(nullptr);
    removeAll(true);
    if (platformFrame_) platformFrame_->destroyWindow();
    frontDirtyRects_.clear();
    backDirtyRects_.clear();
    drawContext_ = nullptr;
    renderer_.attach(nullptr, 0, 0, 0);
    backBuffer_.reset();
    platformFrame_ = nullptr;
    editor_ = nullptr;
}

void CFrame::createSurface() {
    drawContext_ = nullptr;
    backBuffer_ = platformFrame_->createSurface();
    backBuffer_->create(static_cast<int>(getViewSize().width()),
                        static_cast<int>(getViewSize().height()));
    renderer_.attach(*backBuffer_);
    drawContext_ = Counted<CDrawContext>::make(this, nullptr, platformFrame_->getPlatformHandle(),
                                               CDrawContext::OwnSurface::kNever);
    storeDirty(true);
}

void CFrame::doIdle() {
    const Counted<IFrame> window(platformFrame_); // an event may close the frame
    if (window) window->doIdle();
}

std::uint64_t CFrame::getTicks() const { return platform().ticks(); }

bool CFrame::getPosition(double* x, double* y) {
    return platformFrame_ && platformFrame_->getPosition(x, y);
}

CPoint CFrame::drawScreenOrigin() {
    CPoint origin;
    getPosition(&origin.x, &origin.y);
    return origin;
}

bool CFrame::setSize(double width, double height) {
    if (!(width >= 1.0 && height >= 1.0)) return false;
    setViewSize(CRect::ofSize(getViewSize().left, getViewSize().top, width, height), true);
    return true;
}

void CFrame::setViewSize(const CRect& rect, bool invalidate) {
    const bool resized =
        rect.width() != getViewSize().width() || rect.height() != getViewSize().height();
    if (platformFrame_ && resized) platformFrame_->setSize(rect.width(), rect.height());
    storeSize(rect);
    setMouseableArea(rect);
    if (platformFrame_ && resized) createSurface();
    if (invalidate) setDirty(true);
}

bool CFrame::getSize(CRect* rect) { return platformFrame_ && platformFrame_->getSize(rect); }

bool CFrame::setModalView(CView* view) {
    if (view == nullptr) {
        CView* old = modalView_;
        modalView_ = nullptr;
        if (old != nullptr && isChild(old)) removeView(old, false);
        return true;
    }
    if (modalView_ != nullptr || view->isAttached()) return false;
    modalView_ = view;
    setMouseDownView(view);
    if (addView(view)) return true;
    modalView_ = nullptr;
    setMouseDownView(nullptr);
    return false;
}

void CFrame::beginEdit(Vardo::IPluginParameter* parameter) {
    if (parameter != nullptr && editor_ != nullptr) editor_->beginEdit(*parameter);
}

void CFrame::endEdit(Vardo::IPluginParameter* parameter) {
    if (parameter != nullptr && editor_ != nullptr) editor_->endEdit(*parameter);
}

void CFrame::performEdit(Vardo::IPluginParameter* parameter, double normalized, CView* except) {
    if (parameter != nullptr && editor_ != nullptr)
        editor_->performEdit(*parameter, normalized, except);
}

std::int32_t CFrame::getCurrentMouseButtons() {
    return platformFrame_ ? platformFrame_->getCurrentMouseButtons() : mouseButtons_;
}

void CFrame::setCursor(CursorKind kind) {
    if (platformFrame_) platformFrame_->setMouseCursor(kind);
}

void CFrame::setFocusView(CView* view) {
    if (focusChanging || view == focusView_) return;
    focusChanging = true;
    const Counted<CView> old(focusView_);
    const Counted<CView> now(view);
    focusView_ = view;
    if (now && now->getWantsFocus()) now->setDirty(true);
    if (old) {
        if (old->getWantsFocus()) old->setDirty(true);
        old->looseFocus();
    }
    focusChanging = false;
    if (now && focusView_ == now.get()) now->takeFocus();
}

void CFrame::onViewRemoved(const CView* view) {
    if (mouseOverView() == view) setMouseOverView(nullptr);
    if (focusView_ == view) {
        const Counted<CView> old(focusView_);
        focusView_ = nullptr;
        old->looseFocus();
    }
    if (modalView_ == view) modalView_ = nullptr;
}

void CFrame::setDropAccepted(bool accepted) {
    if (platformFrame_) platformFrame_->setDropAccepted(accepted);
}

CDragContainer* CFrame::getDragContainer() {
    return platformFrame_ ? platformFrame_->getDragContainer() : nullptr;
}

bool CFrame::isTypeOf(const char* name) const {
    return std::strcmp(name, "CFrame") == 0 || CViewContainer::isTypeOf(name);
}

} // namespace Sorel
