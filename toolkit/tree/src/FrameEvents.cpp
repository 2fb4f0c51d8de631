// The road of an event from the window to the views.
#include "platform/DragContainer.h"
#include "tree/Frame.h"
#include "tree/SorelineEditor.h"

namespace Sorel {

// Every event may close the window that it came from: each holds on to the frame while it runs.

int CFrame::platformMouseDown(CPoint where, std::int32_t buttons) {
    const Counted<CFrame> self(this);
    return onMouseDown(where, &buttons);
}

int CFrame::platformMouseUp(CPoint where, std::int32_t buttons) {
    const Counted<CFrame> self(this);
    return onMouseUp(where, &buttons);
}

int CFrame::platformMouseMoved(CPoint where, std::int32_t buttons) {
    const Counted<CFrame> self(this);
    return onMouseMoved(where, &buttons);
}

void CFrame::platformMouseEntered(CPoint where, std::int32_t buttons) {
    const Counted<CFrame> self(this);
    if (modalView_ == nullptr) onMouseEntered(where, &buttons);
}

void CFrame::platformMouseExited(CPoint where, std::int32_t buttons) {
    const Counted<CFrame> self(this);
    onMouseExited(where, &buttons);
}

bool CFrame::platformWheel(CPoint where, int axis, float distance, std::int32_t buttons) {
    const Counted<CFrame> self(this);
    return onWheel(where, axis, distance, &buttons);
}

int CFrame::platformKeyDown(const KeyEvent& key) {
    const Counted<CFrame> self(this);
    return onKeyDown(key);
}

int CFrame::platformKeyUp(const KeyEvent& key) {
    const Counted<CFrame> self(this);
    return onKeyUp(key);
}

void CFrame::platformDragEnter(CDragContainer& drag, CPoint where) {
    const Counted<CFrame> self(this);
    if (modalView_ == nullptr) onDragEnter(drag, where);
}

void CFrame::platformDragMove(CDragContainer& drag, CPoint where) {
    const Counted<CFrame> self(this);
    if (modalView_ == nullptr) onDragMove(drag, where);
}

void CFrame::platformDragLeave(CDragContainer& drag, CPoint where) {
    const Counted<CFrame> self(this);
    onDragLeave(drag, where);
}

bool CFrame::platformDrop(CDragContainer& drag, CPoint where) {
    const Counted<CFrame> self(this);
    return modalView_ == nullptr && onDrop(drag, where);
}

void CFrame::platformFocusLost() {
    const Counted<CFrame> self(this);
    setFocusView(nullptr);
}

void CFrame::platformCloseRequested() {
    const Counted<CFrame> self(this);
    if (editor_ != nullptr) editor_->onCloseRequested();
}

void CFrame::platformResized(double width, double height) {
    if (width >= 1.0 && height >= 1.0) setDirty(true);
}

int CFrame::onMouseDown(CPoint where, std::int32_t* buttons) {
    mouseLocation_ = where;
    mouseButtons_ = *buttons;
    if (focusView_ != nullptr && focusView_->getParentView() != nullptr &&
        !focusView_->hitTest(focusView_->getParentView()->frameToLocal(where), *buttons))
        setFocusView(nullptr);

    if (modalView_ != nullptr) {
        const Counted<CView> modal(modalView_);
        const CPoint local = inside(where);
        if (!modal->hitTest(local, *buttons)) return kMouseHandledDone;
        const int answer = modal->onMouseDown(local, buttons);
        if (modalView_ == modal.get()) setMouseDownView(modal.get());
        return answer;
    }
    const int answer = CViewContainer::onMouseDown(where, buttons);
    if (mouseDownView() != nullptr && mouseDownView() != getViewAt(inside(where)))
        setMouseDownView(nullptr);
    return answer;
}

int CFrame::onMouseUp(CPoint where, std::int32_t* buttons) {
    mouseLocation_ = where;
    mouseButtons_ = 0;
    if (modalView_ != nullptr) {
        const Counted<CView> modal(modalView_);
        return modal->onMouseUp(inside(where), buttons);
    }
    return CViewContainer::onMouseUp(where, buttons);
}

int CFrame::onMouseMoved(CPoint where, std::int32_t* buttons) {
    mouseLocation_ = where;
    mouseButtons_ = *buttons;
    if (modalView_ != nullptr) {
        const Counted<CView> modal(modalView_);
        return modal->onMouseMoved(inside(where), buttons);
    }
    return CViewContainer::onMouseMoved(where, buttons);
}

int CFrame::onMouseExited(CPoint where, std::int32_t* buttons) {
    if (modalView_ != nullptr) {
        const Counted<CView> modal(modalView_);
        modal->onMouseExited(inside(where), buttons);
    }
    CViewContainer::onMouseExited(where, buttons);
    return kMouseHandled;
}

bool CFrame::onWheel(CPoint where, int axis, float distance, std::int32_t* buttons) {
    if (modalView_ != nullptr) {
        const Counted<CView> modal(modalView_);
        return modal->onWheel(inside(where), axis, distance, buttons);
    }
    CView* const pressed = mouseDownView();
    const bool taken = CViewContainer::onWheel(where, axis, distance, buttons);
    if (pressed != nullptr && isChild(pressed)) setMouseDownView(pressed);
    return taken;
}

int CFrame::onKeyDown(const KeyEvent& key) {
    int answer = kKeyNotHandled;
    if (focusView_ != nullptr) {
        const Counted<CView> focus(focusView_);
        answer = focus->onKeyDown(key);
    }
    if (answer == kKeyNotHandled && modalView_ != nullptr) {
        const Counted<CView> modal(modalView_);
        return modal->onKeyDown(key);
    }
    if (answer == kKeyNotHandled) answer = CViewContainer::onKeyDown(key);
    if (answer == kKeyNotHandled && key.virtualKey == Key::kTab &&
        advanceNextFocusView(focusView_, (key.modifiers & Modifier::kShift) != 0))
        answer = 1;
    return answer;
}

int CFrame::onKeyUp(const KeyEvent& key) {
    int answer = kKeyNotHandled;
    if (focusView_ != nullptr) {
        const Counted<CView> focus(focusView_);
        answer = focus->onKeyUp(key);
    }
    if (answer == kKeyNotHandled && modalView_ != nullptr) {
        const Counted<CView> modal(modalView_);
        return modal->onKeyUp(key);
    }
    return answer == kKeyNotHandled ? CViewContainer::onKeyUp(key) : answer;
}

} // namespace Sorel
