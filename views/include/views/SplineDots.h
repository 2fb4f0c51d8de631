// A curve of dots through the points of a goniometer.
#pragma once

#include "analysis/GoniometerStream.h"
#include "draw/DrawContext.h"

#include <array>

namespace Sorel {

/// Eight dots from each point to the next, on a cubic through both whose bends follow the
/// neighbours; the points form a closed ring. Each dot blends one pixel, so where the signal often
/// is, the trace gets bright. Source: four-point cubic, p(t) = a t^3 + (y0 - y1 - a) t^2
/// + (y2 - y0) t + y1 with a = y3 - y2 - y0 + y1.
class SplineDots {
  public:
    static constexpr std::size_t kNumPoints = Orvel::GoniometerStream::kNumPoints;
    static constexpr int kDotsPerPoint = 8;
    using Points = std::array<Orvel::GoniometerPoint, kNumPoints>;

    /// `reach` pixels to full scale; what is no number or beyond full scale stays in the centre.
    void setPoints(const Points& points, float reach);
    void draw(CDrawContext& context, CPoint centre, CColor color);
    /// Around all dots, pixels from the centre; somewhat wider, as the cubic swings beyond its
    /// points.
    CRect bounds() const;

  private:
    // With one point before the first and two after the last, pixels from the centre.
    std::array<float, kNumPoints + 3> right_{};
    std::array<float, kNumPoints + 3> down_{};
    std::array<float, kNumPoints> dotsX_{};
    std::array<float, kNumPoints> dotsY_{};
};

} // namespace Sorel
