// A dark bed without edges, for numbers that stand over curves and grids.
#pragma once

#include "draw/DrawContext.h"

#include <algorithm>

namespace Sorel {

/// How far a bed fades out around its box, in pixels.
inline constexpr int kSoftBedReach = 5;

/// `color` over all of `box`, fading to nothing within kSoftBedReach pixels around it. Many shapes:
/// meant for pictures that are kept.
inline void drawSoftBed(CDrawContext& context, const CRect& box, CColor color) {
    double covered = 0.0;
    for (int ring = 1; ring <= kSoftBedReach; ++ring) { // from the outside
        const double t = double(ring) / kSoftBedReach;
        const double wanted = t * t * (3.0 - 2.0 * t) * color.alpha / 255.0;
        const double missing = (wanted - covered) / std::max(1e-3, 1.0 - covered);
        const double reach = kSoftBedReach - ring;
        context.setFillColor(color.withAlpha(255).faded(missing));
        context.drawRoundRect(box.inset(-reach, -reach), static_cast<float>(2.0 + reach), kFilled);
        covered = wanted;
    }
}

} // namespace Sorel
