#include "views/ScopeStrip.h"

#include <algorithm>
#include <cmath>

namespace Sorel {

void ScopeStrip::setWidth(int places) {
    stale_.assign(static_cast<std::size_t>(std::max(0, places)), 1);
    anyStale_ = true;
    first_ = 0;
    picture_ = nullptr;
}

void ScopeStrip::invalidate() {
    std::fill(stale_.begin(), stale_.end(), std::uint8_t{1});
    anyStale_ = true;
}

void ScopeStrip::invalidate(int place) {
    const int count = width();
    if (count == 0) return;
    for (int p = place - kReach; p <= place + kReach; ++p)
        stale_[static_cast<std::size_t>(((p % count) + count) % count)] = 1;
    anyStale_ = true;
}

void ScopeStrip::setFirst(int place) {
    if (place == first_ || place < 0 || place >= width()) return;
    invalidate(first_);
    invalidate(place);
    first_ = place;
}

void ScopeStrip::draw(CDrawContext& context, const CRect& rect, const Painter& paint) {
    const int height = static_cast<int>(std::ceil(rect.height()));
    if (width() == 0 || height <= 0) return;
    if (!picture_ || static_cast<int>(picture_->getHeight()) != height) {
        picture_ = Counted<CBitmap>::make(width(), height);
        invalidate();
    }
    if (anyStale_) refresh(paint);
    const double seam = rect.left + width() - first_;
    picture_->draw(context, {rect.left, rect.top, seam, rect.bottom}, {double(first_), 0.0});
    picture_->draw(context, {seam, rect.top, rect.left + width(), rect.bottom}, {0.0, 0.0});
}

void ScopeStrip::refresh(const Painter& paint) {
    const auto isStale = [this](int c) {
        return stale_[static_cast<std::size_t>(placeOf(c))] != 0;
    };
    const int count = width();
    for (int c = 0; c < count;) {
        if (!isStale(c)) {
            ++c;
            continue;
        }
        int end = c + 1;
        for (int ahead = end; ahead < count && ahead < end + kMergeGap; ++ahead)
            if (isStale(ahead)) end = ahead + 1;
        // A stretch of the display is two of the picture where it crosses the end of the ring.
        const int atRingsEnd = std::clamp(count - first_, c, end);
        repaint(c, atRingsEnd, paint);
        repaint(atRingsEnd, end, paint);
        c = end;
    }
    std::fill(stale_.begin(), stale_.end(), std::uint8_t{0});
    anyStale_ = false;
}

void ScopeStrip::repaint(int firstColumn, int endColumn, const Painter& paint) {
    if (firstColumn >= endColumn) return;
    const int place = placeOf(firstColumn);
    const int count = endColumn - firstColumn;
    IOSBitmap& surface = picture_->surface();
    for (int y = 0; y < surface.height; ++y)
        std::fill_n(surface.getPixels() + std::ptrdiff_t{y} * surface.stride + 4 * place, 4 * count,
                    std::uint8_t{0});
    CDrawContext& context = picture_->context();
    context.setClipRect({double(place), 0.0, double(place + count), double(surface.height)});
    paint(context, double(place - firstColumn));
}

} // namespace Sorel
