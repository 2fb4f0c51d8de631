// The waterfall's rows as polygons, back to front: what SpectrumWaterfallPainter is to look like.
#pragma once

#include "analysis/SpectrumWaterfall.h"
#include "draw/DrawContext.h"
#include "views/SpectrumColors.h"
#include "views/WaterfallProjection.h"

#include <cmath>

namespace Sorel {

/// Each row is filled down to its base line with a gradient square to that line, and outlined.
inline void paintWaterfallAsPolygons(CDrawContext& context,
                                     const Orvel::SpectrumWaterfall& rows,
                                     double fullHeight,
                                     const WaterfallProjection& projection) {
    constexpr int kLast = Orvel::SpectrumWaterfall::kNumRows - 1;
    constexpr int kPoints = Orvel::SpectrumWaterfall::kNumColumns;
    const double width = projection.rowWidth();
    const double fall = projection.rowFall();
    const double length2 = width * width + fall * fall;
    const double up = projection.levelHeight() * width / length2;
    CPath path;
    for (int age = kLast; age >= 0; --age) {
        const double depth = static_cast<double>(age) / kLast;
        const CPoint base = projection.at(0.0, depth, 1.0);
        const CPoint end = projection.at(1.0, depth, 1.0);
        path.clear();
        path.moveTo(base.x, base.y);
        for (int k = 0; k <= kPoints; ++k) {
            const auto& row = rows.row(age);
            const double height = double{row[static_cast<std::size_t>(std::min(k, kPoints - 1))]};
            const CPoint p =
                projection.at(static_cast<double>(k) / kPoints, depth, height / fullHeight);
            path.lineTo(p.x, p.y);
        }
        path.lineTo(end.x, end.y);
        path.close();
        CLinearGradient gradient(base, base + CPoint{fall * up, -width * up});
        for (const double level : {0.0, 0.18, 0.36, 0.56, 0.72, 0.9, 1.0})
            gradient.stop(level, waterfallColor(level, depth));
        context.fillPath(path, gradient);
        context.setFrameColor({0, 0, 0, 135});
        context.setLineWidth(0.5);
        context.drawPath(path, kStroked);
    }
}

} // namespace Sorel
