// Outlines to fill and stroke, and the gradients to fill them with.
#pragma once

#include "draw/Geometry.h"

#include <array>
#include <cstddef>
#include <span>
#include <vector>

namespace Sorel {

/// Lines and curves, in pixels. A path may be reused: `clear` keeps the memory.
class CPath {
  public:
    enum class Verb : std::uint8_t { kMove, kLine, kQuad, kCubic, kClose };

    void clear() {
        verbs_.clear();
        points_.clear();
    }
    void moveTo(double x, double y) { add(Verb::kMove, {x, y}); }
    void lineTo(double x, double y) { add(Verb::kLine, {x, y}); }
    void quadTo(CPoint control, CPoint end) {
        add(Verb::kQuad, control);
        points_.push_back(end);
    }
    void cubicTo(CPoint control1, CPoint control2, CPoint end) {
        add(Verb::kCubic, control1);
        points_.push_back(control2);
        points_.push_back(end);
    }
    void close() { verbs_.push_back(Verb::kClose); }

    std::span<const Verb> verbs() const { return verbs_; }
    /// One point for move and line, two for quad, three for cubic, none for close.
    std::span<const CPoint> points() const { return points_; }
    bool isEmpty() const { return verbs_.empty(); }

  private:
    void add(Verb verb, CPoint point) {
        verbs_.push_back(verb);
        points_.push_back(point);
    }

    std::vector<Verb> verbs_;
    std::vector<CPoint> points_;
};

/// Colours along the line from `from` to `to`, held constant beyond its ends. Offsets rise from 0
/// to
/// 1. Colours are mixed premultiplied, so a fade to transparency keeps its hue.
struct CLinearGradient {
    struct Stop {
        double offset = 0.0;
        CColor color;
    };
    static constexpr std::size_t kMaxStops = 8;

    CPoint from;
    CPoint to;
    std::array<Stop, kMaxStops> stops{};
    std::size_t count = 0;

    CLinearGradient() = default;
    CLinearGradient(CPoint start, CPoint end)
        : from(start)
        , to(end) {}
    static CLinearGradient vertical(double top, double bottom) {
        return {{0.0, top}, {0.0, bottom}};
    }
    static CLinearGradient horizontal(double left, double right) {
        return {{left, 0.0}, {right, 0.0}};
    }
    /// Further stops than kMaxStops are left out.
    CLinearGradient& stop(double offset, CColor color) {
        if (count < kMaxStops) stops[count++] = {offset, color};
        return *this;
    }
    /// The straight colour at `position` 0..1.
    CColor at(double position) const;
};

/// The closed band between an upper and a lower line of one point a column, as waveforms and filled
/// curves are: point c lies at x = left + c * columnWidth. `upper` and `lower` hold the same number
/// of y values, with upper <= lower (smaller y is higher); NaN leaves the band out at that column.
struct CColumnBand {
    double left = 0.0;
    double columnWidth = 1.0;
    std::span<const float> upper;
    std::span<const float> lower;
};

} // namespace Sorel
