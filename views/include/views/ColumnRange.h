// A stretch of the columns of a picture.
#pragma once

#include "draw/DrawContext.h"

#include <algorithm>
#include <cmath>

namespace Sorel {

/// Columns from `first` up to but not including `end`.
struct ColumnRange {
    int first = 0;
    int end = 0;

    bool isEmpty() const { return end <= first; }
    void add(int column) {
        first = isEmpty() ? column : std::min(first, column);
        end = std::max(end, column + 1);
    }
    /// Those of `count` columns, one a pixel from `left` on, that are to be painted, and so many
    /// before and after them.
    static ColumnRange
    toPaint(const CDrawContext& context, double left, int count, int before, int after) {
        const CRect clip = context.getClipRect();
        const double last = count;
        return {static_cast<int>(std::clamp(std::floor(clip.left - left) - before, 0.0, last)),
                static_cast<int>(std::clamp(std::ceil(clip.right - left) + after, 0.0, last))};
    }
};

} // namespace Sorel
