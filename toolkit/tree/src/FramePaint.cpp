// The record of dirty rectangles, and the repaint that empties it.
#include "tree/Frame.h"

namespace Sorel {

void CFrame::addDirtyRect(const CRect& rect, const CView* /*view*/) {
    if (rect.isEmpty()) return;
    if (frontDirtyRects_.isFull()) {
        setDirty(true);
        return;
    }
    if (!frontDirtyRects_.covers(rect)) frontDirtyRects_.append(rect);
}

void CFrame::invalidRect(const CRect& rect) { addDirtyRect(rect.intersected(getViewSize()), this); }

CRect CFrame::paintRect(CDrawContext& context, const CRect& rect) {
    const CRect part = rect.intersected(getViewSize());
    if (part.isEmpty()) return part;
    const CRect oldClip = context.getClipRect();
    context.setClipRect(part);
    CViewContainer::drawRect(context, part);
    context.setClipRect(oldClip);
    return part;
}

void CFrame::repaint(CDrawContext* given) {
    CDrawContext* context = given != nullptr ? given : drawContext_.get();
    if (context == nullptr) return;
    CRect painted;
    {
        const Core::Threads::ScopedLock guard(lock_);
        renderer_.masterAlpha(1.0);
        if (isDirty()) {
            setDirty(false);
            frontDirtyRects_.clear();
            painted = paintRect(*context, getViewSize());
        } else {
            // Views that animate record themselves again while they draw.
            std::swap(frontDirtyRects_, backDirtyRects_);
            frontDirtyRects_.clear();
            for (int i = 0; i < backDirtyRects_.count(); ++i) {
                const CRect part = paintRect(*context, backDirtyRects_[i]);
                if (part.isEmpty()) continue;
                painted = painted.isEmpty() ? part
                                            : CRect{std::min(painted.left, part.left),
                                                    std::min(painted.top, part.top),
                                                    std::max(painted.right, part.right),
                                                    std::max(painted.bottom, part.bottom)};
            }
            backDirtyRects_.clear();
        }
        context->resetClipRect();
    }
    if (painted.isEmpty()) return;
    lastPaintTime_ = getTicks();
    if (platformFrame_) platformFrame_->invalidRect(painted);
}

void CFrame::platformIdle() {
    const Counted<CFrame> self(this);
    onIdle();
    if (!closed_) repaint();
}

} // namespace Sorel
