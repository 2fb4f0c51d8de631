// Second differences in, coverage out.
#include "ColumnRaster.h"

#include <emmintrin.h>

namespace Sorel {

void ColumnRaster::begin(const PixelBox& area) {
    area_ = area;
    const auto strips = static_cast<std::size_t>((area.width() + kStripWidth - 1) / kStripWidth);
    // Sweeping leaves zeros behind, so memory that was used before is clean.
    const std::size_t needed =
        strips * static_cast<std::size_t>(area.height() + kSpareRows) * kStripWidth;
    if (sums_.size() < needed) sums_.resize(needed);
    if (marks_.size() < needed / kStripWidth) marks_.resize(needed / kStripWidth);
    strips_.assign(strips, Strip{area.height(), 0});
}

void ColumnRaster::edge(CPoint from, CPoint to) {
    double sign = 1.0;
    if (from.x > to.x) {
        std::swap(from, to);
        sign = -1.0;
    }
    double x0 = from.x - area_.left;
    double y0 = from.y - area_.top;
    const double x1 = std::min(to.x - area_.left, double(area_.width()));
    const double y1 = to.y - area_.top;
    const double width = to.x - from.x;
    if (!(x1 > 0.0) || !(x1 > x0)) return; // beside the area, or upright: covers nothing below it
    const double slope = (to.y - from.y) / width;
    const double xEnd = to.x - area_.left;
    if (x0 < 0.0) {
        y0 -= slope * x0;
        x0 = 0.0;
    }
    for (int column = static_cast<int>(x0); x0 < x1; ++column) {
        const double xNext = std::min(column + 1.0, x1);
        // From the nearer end, so that no error adds up over long edges.
        const double yNext = xNext == xEnd ? y1 : y1 - slope * (xEnd - xNext);
        piece(column, y0, yNext, sign * (xNext - x0));
        x0 = xNext;
        y0 = yNext;
    }
}

ColumnRaster::Target ColumnRaster::column(int x, int top, int bottom) {
    const auto strip = static_cast<std::size_t>(x / kStripWidth);
    Strip& rows = strips_[strip];
    rows.top = std::min(rows.top, top);
    rows.bottom = std::max(rows.bottom, bottom);
    const std::size_t first = strip * static_cast<std::size_t>(area_.height() + kSpareRows);
    return {&sums_[first * kStripWidth + static_cast<std::size_t>(x % kStripWidth)],
            &marks_[first]};
}

/// An edge inside one row: covers part of that row's pixel and all of those below.
void ColumnRaster::withinRow(Target target, int row, double y0, double y1, double width) {
    const double above = (y0 + y1) * 0.5 - row; // mean height of the uncovered part
    float* const sums = target.sums + row * kStripWidth;
    sums[0] += static_cast<float>(width * (1.0 - above));
    sums[kStripWidth] += static_cast<float>(width * (2.0 * above - 1.0));
    sums[2 * kStripWidth] -= static_cast<float>(width * above);
    std::memset(target.marks + row, 1, 3);
}

/// width * r(t - y) + factor * r(t - y)^2.
void ColumnRaster::corner(Target target, double y, Corner change) {
    if (change.width == 0.0 && change.factor == 0.0) return;
    rampEnd(target, y, change.factor);
    const int row = static_cast<int>(y);
    const double f = y - row;
    float* const sums = target.sums + row * kStripWidth;
    sums[0] += static_cast<float>(change.width * (1.0 - f));
    sums[kStripWidth] += static_cast<float>(change.width * (2.0 * f - 1.0));
    sums[2 * kStripWidth] -= static_cast<float>(change.width * f);
}

/// factor * r(t - y)^2, see the header.
void ColumnRaster::rampEnd(Target target, double y, double factor) {
    const int row = static_cast<int>(y);
    const double f = y - row;
    float* const sums = target.sums + row * kStripWidth;
    sums[0] += static_cast<float>(factor * (1.0 - f) * (1.0 - f));
    sums[kStripWidth] += static_cast<float>(factor * (1.0 + 2.0 * f * (1.0 - f)));
    sums[2 * kStripWidth] += static_cast<float>(factor * f * f);
    std::memset(target.marks + row, 1, 3);
}

void ColumnRaster::piece(int x, double y0, double y1, double width) {
    const double height = area_.height();
    if (y0 > y1) std::swap(y0, y1);
    if (y0 >= height) { // adds nothing, but what began above it reaches down to here
        column(x, area_.height(), area_.height());
        return;
    }
    if (y1 <= 0.0) {
        withinRow(column(x, 0, 3), 0, 0.0, 0.0, width);
        return;
    }
    if (y0 < 0.0) { // what lies above the area covers as if it lay along its top
        const double part = width * -y0 / (y1 - y0);
        withinRow(column(x, 0, 3), 0, 0.0, 0.0, part);
        width -= part;
        y0 = 0.0;
    }
    const double end = std::min(y1, height);
    const Target target = column(x, static_cast<int>(y0), static_cast<int>(end) + 3);
    if (y1 - y0 >= 1.0) {
        const double factor = width / (2.0 * (y1 - y0));
        rampEnd(target, y0, factor);
        if (y1 < height) rampEnd(target, y1, -factor);
        return;
    }
    // Nearly level: dividing by its height would lose precision.
    const int row = static_cast<int>(y0);
    if (y1 <= row + 1.0) {
        withinRow(target, row, y0, y1, width);
        return;
    }
    const double upper = width * (row + 1.0 - y0) / (y1 - y0);
    withinRow(target, row, y0, row + 1.0, upper);
    if (row + 1 < area_.height()) withinRow(target, row + 1, row + 1.0, y1, width - upper);
}

void ColumnRaster::hairline(CPoint from, CPoint to, double width) {
    if (from.x > to.x) std::swap(from, to);
    const double across = to.x - from.x;
    const double down = to.y - from.y;
    if (std::abs(down) > across)
        steepHairline(from, to,
                      0.5 * width * std::sqrt(across * across + down * down) / std::abs(down));
    else if (across > 0.0)
        levelHairline(from, to, width);
}

/// A box sheared along the line, from the row of one end to the row of the other; `reach` to both
/// sides. Of a column between 0 and 1 it covers, with its middle at z, the width
/// r(z + reach) - r(z - reach) - r(z - 1 + reach) + r(z - 1 - reach), r(u) = max(0, u).
void ColumnRaster::steepHairline(CPoint top, CPoint bottom, double reach) {
    if (top.y > bottom.y) std::swap(top, bottom);
    const double rowsPerColumn = (bottom.y - top.y) / std::abs(bottom.x - top.x); // may be infinite
    const double columnsPerRow = std::abs(bottom.x - top.x) / (bottom.y - top.y);
    const bool rightwards = bottom.x >= top.x;
    const double rowEnd = area_.height();
    double y0 = top.y - area_.top;
    const double y1 = bottom.y - area_.top;
    double x0 = top.x - area_.left;
    const double x1 = bottom.x - area_.left;
    if (!(y0 < rowEnd) || !(y1 > 0.0)) return;
    if (y0 < 0.0) {
        x0 -= (rightwards ? y0 : -y0) * columnsPerRow;
        y0 = 0.0;
    }
    const double left = std::min(x0, x1) - reach;
    const double right = std::max(x0, x1) + reach;
    if (!(right > 0.0) || !(left < area_.width())) return;
    const int last = static_cast<int>(std::min(right, area_.width() - 1.0));
    for (int c = static_cast<int>(std::max(0.0, left)); c <= last; ++c) {
        const double z0 = rightwards ? x0 - c : c + 1.0 - x0;
        const double z1 = rightwards ? x1 - c : c + 1.0 - x1;
        const Target target =
            column(c, static_cast<int>(y0), static_cast<int>(std::min(y1, rowEnd)) + 3);
        Corner begin;
        Corner end;
        const auto bend = [&](double knot, double sign) {
            if (z1 <= knot) return;
            const double factor = sign * 0.5 * columnsPerRow;
            end.factor -= factor;
            end.width -= sign * (z1 - knot);
            if (z0 > knot) {
                begin.factor += factor;
                begin.width += sign * (z0 - knot);
            } else if (const double y = y0 + (knot - z0) * rowsPerColumn; y < rowEnd) {
                rampEnd(target, y, factor);
            }
        };
        bend(-reach, 1.0);
        bend(reach, -1.0);
        bend(1.0 - reach, -1.0);
        bend(1.0 + reach, 1.0);
        corner(target, y0, begin);
        if (y1 < rowEnd) corner(target, y1, end);
    }
}

/// Each column of pixels gets the ink of its part, spread evenly over the rows that the part
/// crosses and half a width beyond.
void ColumnRaster::levelHairline(CPoint from, CPoint to, double width) {
    double x = from.x - area_.left;
    double y = from.y - area_.top;
    const double xEnd = std::min(to.x - area_.left, double(area_.width()));
    const double slope = (to.y - from.y) / (to.x - from.x);
    const double lengthPerColumn = std::sqrt(1.0 + slope * slope);
    if (x < 0.0) {
        y -= slope * x;
        x = 0.0;
    }
    for (int column = static_cast<int>(x); x < xEnd; ++column) {
        const double xNext = std::min(column + 1.0, xEnd);
        const double yNext = y + slope * (xNext - x);
        hair(column, y, yNext, lengthPerColumn * (xNext - x), width);
        x = xNext;
        y = yNext;
    }
}

/// Level parts are taken for steep ones by a hair: else their ink per row would have no bounds.
void ColumnRaster::hair(int x, double y0, double y1, double length, double width) {
    constexpr double kLeastHeight = 1.0 / 16.0;
    const double middle = 0.5 * (y0 + y1);
    const double height = std::max(std::abs(y1 - y0), kLeastHeight);
    const double reach = 0.5 * (height + width);
    const double inner = 0.5 * std::abs(height - width);
    // Two boxes, one as high as the part and one as high as the line is wide, laid over each other.
    const std::array<double, 4> ends{middle - reach, middle - inner, middle + inner,
                                     middle + reach};
    const double bottom = area_.height();
    if (!(ends[3] > 0.0) || !(ends[0] < bottom)) return;
    const double factor = length / (2.0 * height);
    const Target target = column(x, std::max(0, static_cast<int>(ends[0])),
                                 static_cast<int>(std::min(ends[3], bottom)) + 3);
    if (ends[0] < 0.0) {
        hairFromAbove(target, ends, factor);
        return;
    }
    rampEnd(target, ends[0], factor);
    if (ends[1] < bottom) rampEnd(target, ends[1], -factor);
    if (ends[2] < bottom) rampEnd(target, ends[2], -factor);
    if (ends[3] < bottom) rampEnd(target, ends[3], factor);
}

/// Row by row, for what the upper edge of the area cuts.
void ColumnRaster::hairFromAbove(Target target, const std::array<double, 4>& ends, double factor) {
    const auto inkAbove = [&](double t) {
        const auto square = [t](double end) { return t > end ? (t - end) * (t - end) : 0.0; };
        return factor * (square(ends[0]) - square(ends[1]) - square(ends[2]) + square(ends[3]));
    };
    const int end = static_cast<int>(std::min(std::ceil(ends[3]), double(area_.height())));
    double slope = 0.0;
    double covered = 0.0;
    double above = inkAbove(0.0);
    for (int row = 0; row < end + 2; ++row) {
        const double below = row < end ? inkAbove(row + 1.0) : above;
        const double now = row < end ? below - above : 0.0;
        const double rise = now - covered;
        target.sums[row * kStripWidth] += static_cast<float>(rise - slope);
        target.marks[row] = 1;
        slope = rise;
        covered = now;
        above = below;
    }
}

void ColumnRaster::takeRow(float* sums, Running& running) {
    // Of a column's area: what rounding leaves of a slope that has ended, and far below what shows.
    const __m128 little = _mm_set1_ps(1e-6f);
    const __m128 whole = _mm_set1_ps(1.0f - 1e-4f);
    const __m128 trace = _mm_set1_ps(1e-4f);
    const __m128 noSign = _mm_castsi128_ps(_mm_set1_epi32(0x7fffffff));
    __m128 moving = _mm_setzero_ps();
    __m128 covered = _mm_setzero_ps();
    __m128 open = _mm_setzero_ps();
    for (std::size_t i = 0; i < kStripWidth; i += 4) {
        __m128 s = _mm_load_ps(&running.slope[i]);
        if (sums != nullptr) {
            s = _mm_add_ps(s, _mm_loadu_ps(sums + i));
            _mm_storeu_ps(sums + i, _mm_setzero_ps());
        }
        const __m128 v = _mm_add_ps(_mm_load_ps(&running.value[i]), s);
        const __m128 moves = _mm_cmpgt_ps(_mm_and_ps(s, noSign), little);
        s = _mm_and_ps(s, moves);
        _mm_store_ps(&running.slope[i], s);
        _mm_store_ps(&running.value[i], v);
        const __m128 size = _mm_and_ps(v, noSign);
        moving = _mm_or_ps(moving, moves);
        covered = _mm_or_ps(covered, _mm_cmpgt_ps(size, trace));
        open = _mm_or_ps(open, _mm_cmplt_ps(size, whole));
    }
    running.steady = _mm_movemask_ps(moving) == 0;
    running.nothing = _mm_movemask_ps(covered) == 0;
    running.all = _mm_movemask_ps(open) == 0;
}

void ColumnRaster::coverRow(const Running& running, float alpha, std::uint8_t* coverage) {
    const __m128 noSign = _mm_castsi128_ps(_mm_set1_epi32(0x7fffffff));
    const __m128 scale = _mm_set1_ps(alpha);
    __m128i levels[4];
    for (std::size_t i = 0; i < 4; ++i) {
        const __m128 v = _mm_load_ps(&running.value[4 * i]);
        const __m128 cut = _mm_min_ps(_mm_and_ps(v, noSign), _mm_set1_ps(1.0f));
        levels[i] = _mm_cvtps_epi32(_mm_mul_ps(cut, scale));
    }
    const __m128i bytes = _mm_packus_epi16(_mm_packs_epi32(levels[0], levels[1]),
                                           _mm_packs_epi32(levels[2], levels[3]));
    _mm_store_si128(reinterpret_cast<__m128i*>(coverage), bytes);
}

} // namespace Sorel
