// The plain view: a rectangle in the tree that draws itself and takes events.
#pragma once

#include "draw/BaseObject.h"
#include "draw/DrawContext.h"
#include "draw/Geometry.h"
#include "platform/Input.h"
#include "tree/ViewAttributes.h"

#include <atomic>
#include <cstdint>

namespace Sorel {

class CBitmap;
class CDragContainer;
class CFrame;
class CSorelineEditor;
class CViewContainer;

/// What a mouse event answers.
enum MouseAnswer : int {
    kMouseHandled = 1,
    kMouseNotHandled = 2,
    /// Handled, and neither moves nor the release are wanted.
    kMouseHandledDone = 3,
};
inline constexpr int kKeyNotHandled = -1;

/// Everything visible is a CView in a tree whose root is a CFrame. Its rectangle is in the
/// coordinates of its parent. Events come down from the frame, invalidation goes up to it.
/// Threads: GUI thread; `markDirty` alone on any thread.
/// Life:    counted; a parent takes over the creator's reference (see CViewContainer::addView).
class CView : public CBaseObject, public IDrawOwner {
  public:
    explicit CView(const CRect& size, CFrame* frame = nullptr);
    /// A view of the same size, settings, picture and attributes, in no tree.
    CView(const CView& other);
    ~CView() override;

    virtual void setViewTag(std::int32_t tag) { viewTag_ = tag; }
    virtual std::int32_t getViewTag() const { return viewTag_; }

    // ---- Drawing ------------------------------------------------------------------------------
    /// Draws the background picture; clears the dirty flag.
    virtual void draw(CDrawContext& context);
    /// `updateRect` is the part that must be drawn, in the coordinates of the parent.
    virtual void drawRect(CDrawContext& context, const CRect& updateRect);
    /// True when drawing fills all of `rect` (coordinates of the parent) whatever lies behind it:
    /// what lies behind is then not painted.
    virtual bool covers(const CRect& /*rect*/) const { return false; }
    /// Paints what lies behind `rect`: of all containers that the view is in the background and
    /// the children before it.
    void drawGround(CDrawContext& context, const CRect& rect) const;
    virtual bool checkUpdate(const CRect& updateRect) const { return size_.touches(updateRect); }
    virtual bool isDirty() const { return dirty_; }
    /// True asks the frame to paint the view's visible part again, if anybody can see it.
    virtual void setDirty(bool state = true);
    /// `rect` is in the coordinates of the parent.
    virtual void invalidRect(const CRect& rect);
    virtual void setVisible(bool state);
    /// The view's own flag; see isVisible for what the user sees.
    bool getVisible() const { return visible_; }
    virtual void setActive(bool state);
    bool getActive() const { return active_; }
    /// Any thread: the view becomes dirty with the frame's next idle. Never allocates or waits.
    void markDirty() { dirtyMark_.store(true, std::memory_order_release); }

    // ---- Mouse; `where` in the coordinates of the parent, `buttons` see Buttons ---------------
    virtual int onMouseDown(CPoint where, std::int32_t* buttons);
    virtual int onMouseUp(CPoint where, std::int32_t* buttons);
    virtual int onMouseMoved(CPoint where, std::int32_t* buttons);
    virtual int onMouseEntered(CPoint where, std::int32_t* buttons);
    virtual int onMouseExited(CPoint where, std::int32_t* buttons);
    virtual bool hitTest(CPoint where, std::int32_t buttons = Buttons::kAny) const;
    /// Axis 0 is horizontal. Distance in notches, up or right is positive.
    virtual bool onWheel(CPoint where, int axis, float distance, std::int32_t* buttons);
    virtual bool onWheel(CPoint where, float distance, std::int32_t* buttons);
    virtual void setWantsWheel(bool state) { wantsWheel_ = state; }
    virtual bool getWantsWheel() const { return wantsWheel_; }
    virtual void setMouseEnabled(bool state) { mouseEnabled_ = state; }
    virtual bool getMouseEnabled() const { return mouseEnabled_; }
    virtual void setMouseableArea(const CRect& rect) { mouseableArea_ = rect; }
    virtual const CRect& getMouseableArea() const { return mouseableArea_; }
    virtual void getMouseableArea(CRect* out) const { *out = mouseableArea_; }
    /// A press with a modifier, offered before onMouseDown: true when somebody took it.
    virtual bool offerModifierClick(std::int32_t /*buttons*/) { return false; }

    // ---- Drag and drop ------------------------------------------------------------------------
    virtual bool onDrop(CDragContainer& drag, CPoint where);
    virtual void onDragEnter(CDragContainer& drag, CPoint where);
    virtual void onDragLeave(CDragContainer& drag, CPoint where);
    virtual void onDragMove(CDragContainer& drag, CPoint where);

    // ---- Keys: kKeyNotHandled, or anything else when handled ----------------------------------
    virtual int onKeyDown(const KeyEvent& key);
    virtual int onKeyUp(const KeyEvent& key);

    // ---- Place --------------------------------------------------------------------------------
    virtual void setViewSize(const CRect& rect, bool invalidate = true);
    virtual const CRect& getViewSize() const { return size_; }
    virtual void getViewSize(CRect* out) const { *out = size_; }
    /// The part that no parent cuts off, in the coordinates of the parent; empty outside a tree.
    virtual void getVisibleSize(CRect* out) const;
    virtual void onIdle() {}
    /// From the frame's coordinates to those of this view's parent (of a container: its inside).
    virtual CPoint frameToLocal(CPoint point) const;
    virtual CPoint localToFrame(CPoint point) const;

    // ---- Keyboard focus -----------------------------------------------------------------------
    virtual void takeFocus() {}
    virtual void looseFocus() {}
    virtual bool getWantsFocus() const { return wantsFocus_; }
    virtual void setWantsFocus(bool state) { wantsFocus_ = state; }

    // ---- Background ---------------------------------------------------------------------------
    virtual void setBackground(CBitmap* bitmap);
    virtual CBitmap* getBackground() const { return background_.get(); }
    virtual void setTransparency(bool state) { transparent_ = state; }
    virtual bool getTransparency() const { return transparent_; }

    // ---- Tree ---------------------------------------------------------------------------------
    /// Called by the parent. 1 when the view was in a tree and now is not.
    virtual int removed(CViewContainer* parent);
    /// Called by the parent. 1 when the view was in no tree and now is.
    virtual int attached(CViewContainer* parent);
    virtual void setParentView(CViewContainer* parent) { parentView_ = parent; }
    CViewContainer* getParentView() const { return parentView_; }
    virtual void setFrame(CFrame* frame);
    CFrame* getFrame() const { return frame_; }
    bool isAttached() const { return attached_; }
    virtual CSorelineEditor* getEditor() const;

    /// Class names are compared by their characters; each class also asks its base.
    virtual bool isTypeOf(const char* name) const;
    virtual CView* newCopy() const { return new CView(*this); }
    virtual const char* getClassName() const { return "CView"; }

    /// A parameter that this view is entered for at the editor has a new value.
    virtual void onParameterChanged(int /*parameterIndex*/) {}

    CViewAttributes& attributes() { return attributes_; }

    /// The view and all its parents are switched visible, and the view lies inside each of them.
    bool isVisible() const;
    /// Turns a mark from another thread into setDirty(true).
    void collectDirtyMark();

    // IDrawOwner
    CRect drawArea() override { return size_; }
    CPoint drawScreenOrigin() override;
    Surface drawSurface() override;

  protected:
    void storeSize(const CRect& rect) { size_ = rect; }
    void storeVisible(bool state) { visible_ = state; }
    void storeDirty(bool state) { dirty_ = state; }
    void storeAttached(bool state) { attached_ = state; }
    /// The frame itself is not counted by its own tree's root.
    void storeFrameUncounted(CFrame* frame) { frame_ = frame; }
    /// Hands the visible part to the frame's record of dirty rectangles.
    void recordDirty();

  private:
    CRect size_;
    CRect mouseableArea_;
    bool dirty_ = false;
    bool mouseEnabled_ = true;
    bool transparent_ = false;
    bool wantsFocus_ = false;
    bool attached_ = false;
    bool visible_ = true;
    bool active_ = true;
    bool wantsWheel_ = true;
    std::atomic<bool> dirtyMark_{false};
    Counted<CBitmap> background_;
    CViewAttributes attributes_;
    std::int32_t viewTag_ = 0;
    CFrame* frame_ = nullptr; // counted, unless it is the view itself
    CViewContainer* parentView_ = nullptr;
};

} // namespace Sorel
