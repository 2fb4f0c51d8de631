// The root of the view tree: back buffer, dirty rectangles, focus and modal view of one window.
#pragma once

#include "core/CriticalSection.h"
#include "platform/Frame.h"
#include "tree/DirtyRectHelper.h"
#include "tree/ViewContainer.h"

#include <memory>
#include <string>

namespace Vardo {
class IPluginParameter;
}

namespace Sorel {

/// Threads: GUI thread. The lock lets a repaint and a host that idles on another thread meet.
/// Life:    made by an editor's `open`; `close` ends it: the views hold references to their frame,
///          so dropping the last reference from outside is not enough.
class CFrame : public CViewContainer, public IFrameEvents {
  public:
    /// A window inside `parentWindow`, or one of its own with `title` when that is null.
    CFrame(const CRect& size,
           void* parentWindow,
           CSorelineEditor* editor,
           const std::string& title = {});
    ~CFrame() override;

    /// Takes all views out of the tree and releases them, then the window goes. The frame can only
    /// be released after this.
    void close();

    /// Events, idle of all views, repainting of what is dirty, and the copy to the window.
    void doIdle();
    /// Milliseconds.
    std::uint64_t getTicks() const;
    /// In ticks: when something was last painted.
    std::uint64_t lastPaintTime() const { return lastPaintTime_; }
    bool getPosition(double* x, double* y);
    bool setSize(double width, double height);
    bool getSize(CRect* rect);

    /// Shows `view` above all others; presses outside it are swallowed. The caller keeps its
    /// reference. Null takes the modal view away. False when there is one already, or `view` is in
    /// a tree.
    bool setModalView(CView* view);
    CView* getModalView() const { return modalView_; }

    /// Brackets around a user's gesture, passed on to the editor; null is ignored.
    void beginEdit(Vardo::IPluginParameter* parameter);
    void endEdit(Vardo::IPluginParameter* parameter);
    /// `normalized` 0..1.
    void performEdit(Vardo::IPluginParameter* parameter, double normalized, CView* except);

    void getCurrentMouseLocation(CPoint* where) const { *where = mouseLocation_; }
    std::int32_t getCurrentMouseButtons();
    void setCursor(CursorKind kind);

    /// Moves the keyboard focus; null takes it from whoever has it.
    void setFocusView(CView* view);
    CView* getFocusView() const { return focusView_; }
    /// Called by views on their way out of the tree.
    void onViewRemoved(const CView* view);

    /// The answer that the source of a running drag gets to see, and what is being dragged.
    void setDropAccepted(bool accepted);
    CDragContainer* getDragContainer();

    /// `rect` in the frame's coordinates; what lies inside a recorded rectangle is not added again.
    void addDirtyRect(const CRect& rect, const CView* view);
    int dirtyRectCount() const { return frontDirtyRects_.count(); }
    IFrame* platformFrame() const { return platformFrame_.get(); }

    /// Paints what is dirty into the back buffer and hands it to the window; nothing when nothing
    /// is dirty. Null uses the frame's own context.
    void repaint(CDrawContext* context = nullptr);

    void draw(CDrawContext& context) override { repaint(&context); }
    /// The frame's own flag alone decides: a dirty child has its own rectangle.
    bool isDirty() const override { return CView::isDirty(); }
    /// Stores the flag alone.
    void setDirty(bool state = true) override { storeDirty(state); }
    void invalidRect(const CRect& rect) override;
    void setViewSize(const CRect& rect, bool invalidate = true) override;
    int onMouseDown(CPoint where, std::int32_t* buttons) override;
    int onMouseUp(CPoint where, std::int32_t* buttons) override;
    int onMouseMoved(CPoint where, std::int32_t* buttons) override;
    int onMouseExited(CPoint where, std::int32_t* buttons) override;
    using CViewContainer::onWheel;
    bool onWheel(CPoint where, int axis, float distance, std::int32_t* buttons) override;
    int onKeyDown(const KeyEvent& key) override;
    int onKeyUp(const KeyEvent& key) override;
    CSorelineEditor* getEditor() const override { return editor_; }
    bool isTypeOf(const char* name) const override;
    const char* getClassName() const override { return "CFrame"; }
    CView* newCopy() const override { return nullptr; } // a window is not copied

    CPoint drawScreenOrigin() override;
    Surface drawSurface() override { return {&renderer_, backBuffer_.get()}; }

  private:
    // IFrameEvents
    int platformMouseDown(CPoint where, std::int32_t buttons) override;
    int platformMouseUp(CPoint where, std::int32_t buttons) override;
    int platformMouseMoved(CPoint where, std::int32_t buttons) override;
    void platformMouseEntered(CPoint where, std::int32_t buttons) override;
    void platformMouseExited(CPoint where, std::int32_t buttons) override;
    bool platformWheel(CPoint where, int axis, float distance, std::int32_t buttons) override;
    int platformKeyDown(const KeyEvent& key) override;
    int platformKeyUp(const KeyEvent& key) override;
    void platformDragEnter(CDragContainer& drag, CPoint where) override;
    void platformDragMove(CDragContainer& drag, CPoint where) override;
    void platformDragLeave(CDragContainer& drag, CPoint where) override;
    bool platformDrop(CDragContainer& drag, CPoint where) override;
    IOSBitmap* platformSurface() override { return backBuffer_.get(); }
    void platformIdle() override;
    void platformFocusLost() override;
    void platformCloseRequested() override;
    void platformResized(double width, double height) override;

    void createSurface();
    CRect paintRect(CDrawContext& context, const CRect& rect);

    CSorelineEditor* editor_;
    CView* modalView_ = nullptr;
    CView* focusView_ = nullptr;
    bool closed_ = false;
    std::unique_ptr<IOSBitmap> backBuffer_;
    CRenderer renderer_;
    Counted<CDrawContext> drawContext_;
    std::uint64_t lastPaintTime_ = 0;
    CDirtyRectHelper frontDirtyRects_;
    CDirtyRectHelper backDirtyRects_;
    Counted<IFrame> platformFrame_;
    CPoint mouseLocation_{-1.0, -1.0};
    std::int32_t mouseButtons_ = 0;
    Core::Threads::CriticalSection lock_;
};

} // namespace Sorel
