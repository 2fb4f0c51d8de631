// The rectangles that wait to be painted.
#pragma once

#include "draw/Geometry.h"

#include <array>

namespace Sorel {

/// A fixed list, so that invalidation never allocates. Overlapping rectangles are not merged.
class CDirtyRectHelper {
  public:
    static constexpr int kCapacity = 64;

    int count() const { return count_; }
    bool isFull() const { return count_ >= kCapacity; }
    const CRect& operator[](int index) const { return rects_[static_cast<std::size_t>(index)]; }
    void clear() { count_ = 0; }
    /// Does nothing beyond the capacity.
    void append(const CRect& rect);
    /// An entry equals or contains `rect`.
    bool covers(const CRect& rect) const;

  private:
    std::array<CRect, kCapacity> rects_{};
    int count_ = 0;
};

} // namespace Sorel
