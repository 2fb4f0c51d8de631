// The view with children.
#pragma once

#include "tree/View.h"

#include <vector>

namespace Sorel {

/// Children have coordinates of their own: 0, 0 is the container's top left corner. Later children
/// lie above earlier ones, and get events first.
class CViewContainer : public CView {
  public:
    /// The one message that the tree acts on: a container answers 1.
    static const char* const kMsgCheckIfViewContainer;
    /// Declared for other parts of a program; the tree never sends it.
    static const char* const kMsgLooseFocus;

    explicit CViewContainer(const CRect& size,
                            CFrame* frame = nullptr,
                            CBitmap* background = nullptr);
    /// The copy has copies of the children.
    CViewContainer(const CViewContainer& other);
    ~CViewContainer() override;

    // ---- Children -------------------------------------------------------------------------------
    /// All ways of adding take over the caller's reference, and refuse (false) null and a view that
    /// is in a tree.
    bool addViewBefore(CView* view, CView* before);
    virtual bool addView(CView* view, const CRect& mouseableArea, bool mouseEnabled);
    virtual bool addView(CView* view);
    /// Takes the view out, and with `withRelease` gives its reference up. A view that is no child
    /// empties the whole list without releasing anything, and answers false: ask isChild first.
    virtual bool removeView(CView* view, bool withRelease = true);
    virtual bool removeAll(bool withRelease = true);
    bool isChild(const CView* view) const;
    int getNbViews() const { return static_cast<int>(children_.size()); }
    /// Null past the end.
    CView* getView(int index) const;
    /// The frontmost visible child at `where` (coordinates of the container's inside).
    CView* getViewAt(CPoint where, bool deep = false) const;
    /// The container itself when no child container is there.
    CViewContainer* getContainerAt(CPoint where, bool deep = false);

    // ---- Background -----------------------------------------------------------------------------
    virtual void setBackgroundColor(CColor color);
    CColor getBackgroundColor() const { return backgroundColor_; }
    virtual void setBackgroundOffset(CPoint point) { backgroundOffset_ = point; }
    CPoint getBackgroundOffset() const { return backgroundOffset_; }
    virtual void drawBackgroundRect(CDrawContext& context, const CRect& rect);
    /// What lies behind `rect` of `child`, in inside coordinates.
    void drawBehind(CDrawContext& context, const CRect& rect, const CView& child);
    virtual void setClipMode(bool state) { clipMode_ = state; }

    // ---- Everything below as in CView, for the children -----------------------------------------
    /// The next child that wants the focus gets it; false when there is none.
    virtual bool advanceNextFocusView(CView* current, bool reverse);
    virtual void invalid();
    virtual bool invalidateDirtyChildren();
    virtual void setVisibleAll(bool state, bool recursive);
    virtual void setChildrenVisible(bool state);
    using CView::getVisibleSize;
    /// The part of `rect` (inside coordinates) that can be seen, in inside coordinates.
    virtual void getVisibleSize(const CRect& rect, CRect* out) const;
    virtual bool checkUpdateChild(const CView& view, const CRect& rect) const;
    virtual bool hitTestChildren(CPoint where, std::int32_t buttons) const;

    int notify(CBaseObject* sender, const char* message) override;
    void draw(CDrawContext& context) override;
    void drawRect(CDrawContext& context, const CRect& updateRect) override;
    bool isDirty() const override;
    bool covers(const CRect& rect) const override;
    void setVisible(bool state) override;
    void setViewSize(const CRect& rect, bool invalidate = true) override;
    int onMouseDown(CPoint where, std::int32_t* buttons) override;
    int onMouseUp(CPoint where, std::int32_t* buttons) override;
    int onMouseMoved(CPoint where, std::int32_t* buttons) override;
    int onMouseEntered(CPoint where, std::int32_t* buttons) override;
    int onMouseExited(CPoint where, std::int32_t* buttons) override;
    bool onWheel(CPoint where, int axis, float distance, std::int32_t* buttons) override;
    bool onWheel(CPoint where, float distance, std::int32_t* buttons) override;
    int onKeyDown(const KeyEvent& key) override;
    int onKeyUp(const KeyEvent& key) override;
    bool onDrop(CDragContainer& drag, CPoint where) override;
    void onDragEnter(CDragContainer& drag, CPoint where) override;
    void onDragLeave(CDragContainer& drag, CPoint where) override;
    void onDragMove(CDragContainer& drag, CPoint where) override;
    void onIdle() override;
    CPoint frameToLocal(CPoint point) const override;
    CPoint localToFrame(CPoint point) const override;
    void takeFocus() override;
    void looseFocus() override;
    int removed(CViewContainer* parent) override;
    int attached(CViewContainer* parent) override;
    bool isTypeOf(const char* name) const override;
    CView* newCopy() const override { return new CViewContainer(*this); }
    const char* getClassName() const override { return "CViewContainer"; }

    CView* mouseOverView() const { return mouseOverView_; }
    CView* mouseDownView() const { return mouseDownView_; }
    /// As in CView, but `rect` is in inside coordinates: a child's.
    void invalidRect(const CRect& rect) override;
    /// From inside coordinates to the frame's, as painting does it: origins rounded down.
    CRect insideToFrame(CRect rect) const;

  protected:
    void setMouseOverView(CView* view) { mouseOverView_ = view; }
    void setMouseDownView(CView* view) { mouseDownView_ = view; }
    /// Forgets pointers to a child that goes.
    void forgetView(const CView* view);
    /// From the parent's coordinates to the inside.
    CPoint inside(CPoint where) const { return where - getViewSize().topLeft(); }
    CPoint paintOrigin() const;

  private:
    enum class DragStep { kEnter, kMove };

    /// Holds the children of the moment, so that a handler may add and remove views.
    std::vector<Counted<CView>> holdChildren() const;
    bool takesMouse(const CView& child, CPoint where, std::int32_t buttons) const;
    void updateMouseOver(CPoint insideWhere, std::int32_t* buttons);
    void trackDrag(CDragContainer& drag, CPoint where, DragStep step);
    /// Up to, but not including, `end`.
    void paintChildren(CDrawContext& context, const CRect& update, const CView* end = nullptr);
    bool isCoveredByChild(const CRect& update) const;

    std::vector<CView*> children_; // one reference each
    CView* mouseOverView_ = nullptr;
    CColor backgroundColor_ = kBlackCColor;
    CPoint backgroundOffset_;
    bool clipMode_ = false;
    CView* dragView_ = nullptr;
    CView* mouseDownView_ = nullptr;
};

} // namespace Sorel
