#include "tree/DirtyRectHelper.h"

namespace Sorel {

void CDirtyRectHelper::append(const CRect& rect) {
    if (isFull()) return;
    rects_[static_cast<std::size_t>(count_)] = rect;
    ++count_;
}

bool CDirtyRectHelper::covers(const CRect& rect) const {
    for (int i = 0; i < count_; ++i)
        if ((*this)[i].contains(rect)) return true;
    return false;
}

} // namespace Sorel
