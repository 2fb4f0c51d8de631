// Waveforms and curves: bands and lines of one point a column.
#include "RendererState.h"

#include <limits>

namespace Sorel {

namespace {

/// Paints what `columns` holds with one colour.
void paintSolid(ColumnRaster& columns, const Surface& surface, CColor color) {
    const float alpha = color.alpha;
    const CColor opaque = color.withAlpha(255);
    columns.sweep([alpha](int) { return alpha; },
                  [&](int x, int y, int count, const std::uint8_t* coverage) {
                      surface.span(x, y, count, opaque, coverage);
                  },
                  [&](int x, int y, int count, int end) {
                      for (; y < end; ++y)
                          surface.span(x, y, count, color);
                  });
}

/// The same with a gradient that changes from row to row alone.
void paintRows(ColumnRaster& columns, const Surface& surface, std::span<const CColor> rows) {
    const auto colorOf = [&, top = surface.box().top](int y) {
        return rows[static_cast<std::size_t>(y - top)];
    };
    columns.sweep([&](int y) { return static_cast<float>(colorOf(y).alpha); },
                  [&](int x, int y, int count, const std::uint8_t* coverage) {
                      surface.span(x, y, count, colorOf(y).withAlpha(255), coverage);
                  },
                  [&](int x, int y, int count, int end) {
                      for (; y < end; ++y)
                          surface.span(x, y, count, colorOf(y));
                  });
}

/// The same with any gradient.
void paintTable(ColumnRaster& columns, const Surface& surface, const GradientTable& gradient) {
    std::array<Pixels::Pixel, ColumnRaster::kLongestSpan> colors;
    columns.sweep([](int) { return 255.0f; },
                  [&](int x, int y, int count, const std::uint8_t* coverage) {
                      gradient.row(x, y, count, colors.data());
                      surface.span(x, y, count, colors.data(),
                                   static_cast<const std::uint8_t*>(coverage));
                  },
                  [&](int x, int y, int count, int end) {
                      for (; y < end; ++y) {
                          gradient.row(x, y, count, colors.data());
                          surface.span(x, y, count, colors.data(), std::uint8_t{255});
                      }
                  });
}

/// Points from `first` up to but not including `end` matter for these pixels.
struct Block {
    PixelBox area;
    std::size_t first;
    std::size_t end;
};

/// Calls `paint(block)` for blocks of columns of pixels from left to right, so that the raster's
/// sums stay in the fast memory. Lines of `width` that end at a block's last point end outside of
/// it.
template <class Paint>
void inBlocks(const PixelBox& box,
              double left,
              double columnWidth,
              std::size_t count,
              double width,
              Paint paint) {
    constexpr int kColumns = 4 * ColumnRaster::kLongestSpan;
    const double margin = width + 2.0;
    const auto pointAt = [&](double x) { return (x - left) / columnWidth; };
    for (int x = box.left; x < box.right; x += kColumns) {
        const PixelBox area{x, box.top, std::min(x + kColumns, box.right), box.bottom};
        const auto [low, high] =
            std::minmax({pointAt(area.left - margin), pointAt(area.right + margin)});
        const double last = static_cast<double>(count);
        const double first = std::clamp(std::floor(low), 0.0, last);
        const double end = std::clamp(std::ceil(high) + 1.0, 0.0, last);
        if (first < end)
            paint(Block{area, static_cast<std::size_t>(first), static_cast<std::size_t>(end)});
    }
}

/// Calls `run(first, count)` for each run of columns without a gap.
template <class IsPoint, class Run>
void forRuns(const Block& block, IsPoint isPoint, Run run) {
    for (std::size_t first = block.first; first < block.end;) {
        std::size_t end = first;
        while (end < block.end && isPoint(end))
            ++end;
        if (end - first > 1) run(first, end - first);
        first = end + 1;
    }
}

void addOutline(ColumnRaster& columns, std::span<const CPoint> points) {
    for (std::size_t i = 1; i < points.size(); ++i)
        columns.edge(points[i - 1], points[i]);
    columns.edge(points.back(), points.front());
}

void addStroke(ColumnRaster& columns,
               ShapeRaster& shapes,
               std::span<const CPoint> points,
               bool closed,
               double width) {
    if (width <= ColumnRaster::kThickestHairline) {
        for (std::size_t i = 1; i < points.size(); ++i)
            columns.hairline(points[i - 1], points[i], width);
        if (closed) columns.hairline(points.back(), points.front(), width);
        return;
    }
    CPoint start;
    CPoint last;
    bool any = false;
    shapes.strokeOutline(points, closed, width, Corners::kRound,
                         [&](double x, double y, bool starts) {
                             const CPoint p{x, y};
                             if (starts) {
                                 if (any) columns.edge(last, start);
                                 start = p;
                             } else {
                                 columns.edge(last, p);
                             }
                             last = p;
                             any = true;
                         });
    if (any) columns.edge(last, start);
}

} // namespace

void CRenderer::State::prepareColumns(const CLinearGradient& gradient) {
    rowTints.clear();
    const GradientAxis axis(gradient);
    columnTable.reset();
    if (!axis.isVertical()) {
        columnTable.emplace(gradient);
        return;
    }
    for (int y = surface.box().top; y < surface.box().bottom; ++y)
        rowTints.push_back(gradient.at(axis.at(0.0, y + 0.5)));
}

void CRenderer::State::paintColumns() {
    if (columnTable)
        paintTable(columns, surface, *columnTable);
    else
        paintRows(columns, surface, rowTints);
}

void CRenderer::columnBand(const CColumnBand& band,
                           const CLinearGradient& gradient,
                           CColor outline,
                           double outlineWidth) {
    State& s = *state_;
    const std::size_t count = std::min(band.upper.size(), band.lower.size());
    if (s.cannotDraw() || !std::isfinite(band.left) || !(std::abs(band.columnWidth) > 0.0)) return;

    const auto isPoint = [&](std::size_t c) {
        return std::isfinite(band.upper[c]) && std::isfinite(band.lower[c]);
    };
    const auto point = [&](std::size_t c, float y) {
        return CPoint{band.left + static_cast<double>(c) * band.columnWidth, double{y}};
    };
    // Nobody sees how a foot below `seenTo` runs.
    const auto contour = [&](std::size_t first, std::size_t length,
                             float seenTo) -> std::span<const CPoint> {
        s.points.clear();
        for (std::size_t c = first; c < first + length; ++c)
            s.points.push_back(point(c, band.upper[c]));
        const auto lower = band.lower.subspan(first, length);
        if (std::all_of(lower.begin(), lower.end(), [&](float y) { return y >= seenTo; })) {
            s.points.push_back(point(first + length - 1, seenTo));
            s.points.push_back(point(first, seenTo));
            return s.points;
        }
        for (std::size_t c = first + length; c-- > first;)
            s.points.push_back(point(c, band.lower[c]));
        return s.points;
    };
    constexpr float kEverywhere = std::numeric_limits<float>::infinity();

    s.prepareColumns(faded(gradient, s.masterAlpha));
    const bool outlined = outlineWidth > 0.0 && outline.alpha != 0;
    inBlocks(s.surface.box(), band.left, band.columnWidth, count, outlined ? outlineWidth : 0.0,
             [&](const Block& block) {
                 s.columns.begin(block.area);
                 forRuns(block, isPoint, [&](std::size_t first, std::size_t length) {
                     addOutline(s.columns,
                                contour(first, length, static_cast<float>(block.area.bottom)));
                 });
                 s.paintColumns();
                 if (!outlined) return;
                 s.columns.begin(block.area);
                 forRuns(block, isPoint, [&](std::size_t first, std::size_t length) {
                     addStroke(s.columns, s.shapes, contour(first, length, kEverywhere), true,
                               outlineWidth);
                 });
                 paintSolid(s.columns, s.surface, s.ink(outline).color);
             });
}

void CRenderer::columnLine(
    double left, double columnWidth, std::span<const float> y, CColor color, double width) {
    State& s = *state_;
    if (s.cannotDraw() || !std::isfinite(left) || !(std::abs(columnWidth) > 0.0) || !(width > 0.0))
        return;
    inBlocks(s.surface.box(), left, columnWidth, y.size(), width, [&](const Block& block) {
        s.columns.begin(block.area);
        forRuns(
            block, [&](std::size_t c) { return std::isfinite(y[c]); },
            [&](std::size_t first, std::size_t length) {
                s.points.clear();
                for (std::size_t c = first; c < first + length; ++c)
                    s.points.push_back({left + static_cast<double>(c) * columnWidth, double{y[c]}});
                addStroke(s.columns, s.shapes, s.points, false, width);
            });
        paintSolid(s.columns, s.surface, s.ink(color).color);
    });
}

} // namespace Sorel
