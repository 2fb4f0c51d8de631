// Brings new pixels to the window, one put at a time.
#pragma once

#include "x11/X11Bitmap.h"

#include <vector>

namespace Sorel {

/// Gathers what changed, and sends it once the server has read what was sent before: however slow
/// it is, at most one picture is on the way.
class X11Presenter {
  public:
    /// More rectangles than this become the one around them all.
    static constexpr std::size_t kMaxRects = 16;
    /// A put that is not reported finished after this long is given up for lost.
    static constexpr std::uint64_t kPatienceMilliseconds = 1000;

    void setTarget(const X11Target& target) { target_ = target; }
    void invalidate(const CRect& rect);
    /// Sends what has gathered, if nothing is on the way. `surface` may be null.
    void show(IOSBitmap* surface, std::uint64_t now);
    /// The event that ends a put.
    void onCompletion() { waiting_ = false; }
    bool isWaiting() const { return waiting_; }

  private:
    X11Target target_;
    std::vector<CRect> rects_;
    bool waiting_ = false;
    std::uint64_t sentAt_ = 0;
};

} // namespace Sorel
