// Brings new pixels to the window, one put at a time.
#include "x11/X11Presenter.h"

namespace Sorel {

namespace {

CRect around(const CRect& a, const CRect& b) {
    return {std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right),
            std::max(a.bottom, b.bottom)};
}

} // namespace

void X11Presenter::invalidate(const CRect& rect) {
    if (rect.isEmpty()) return;
    for (const CRect& known : rects_)
        if (known.contains(rect)) return;
    std::erase_if(rects_, [&rect](const CRect& known) { return rect.contains(known); });
    rects_.push_back(rect);
    if (rects_.size() <= kMaxRects) return;
    for (const CRect& known : rects_)
        rects_.front() = around(rects_.front(), known);
    rects_.resize(1);
}

void X11Presenter::show(IOSBitmap* surface, std::uint64_t now) {
    if (waiting_ && now - sentAt_ > kPatienceMilliseconds) waiting_ = false;
    if (waiting_ || rects_.empty() || surface == nullptr || surface->getPixels() == nullptr) return;
    auto* shared = dynamic_cast<CX11Bitmap*>(surface);
    for (std::size_t i = 0; i < rects_.size(); ++i) {
        const X11Area area = areaInside(rects_[i], surface->width, surface->height);
        const bool last = i + 1 == rects_.size();
        if (shared == nullptr)
            putPixels(target_, *surface, area, area.x, area.y);
        else
            waiting_ = shared->put(target_, area, area.x, area.y, last);
    }
    sentAt_ = now;
    rects_.clear();
}

} // namespace Sorel
