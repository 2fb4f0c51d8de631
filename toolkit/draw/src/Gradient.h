// Colours of a linear gradient at pixels.
#pragma once

#include "Pixels.h"
#include "draw/Path.h"

#include <array>

namespace Sorel {

/// The gradient with every alpha times `factor` (0..1).
CLinearGradient faded(CLinearGradient gradient, double factor);

/// Where a point lies between the two ends of a gradient: 0..1 inside, beyond outside. A gradient
/// without length is all at its end.
class GradientAxis {
  public:
    explicit GradientAxis(const CLinearGradient& gradient);
    double at(double x, double y) const { return offset_ + x * perX_ + y * perY_; }
    double perX() const { return perX_; }
    bool isVertical() const { return perX_ == 0.0; }
    bool isHorizontal() const { return perY_ == 0.0; }

  private:
    double perX_ = 0.0;
    double perY_ = 0.0;
    double offset_ = 1.0;
};

/// 256 colours along a gradient, for spans that cross it.
class GradientTable {
  public:
    explicit GradientTable(const CLinearGradient& gradient);
    /// Premultiplied colours of the centres of `count` pixels.
    void row(int x, int y, int count, Pixels::Pixel* out) const;

  private:
    static constexpr int kSize = 256;
    GradientAxis axis_;
    std::array<Pixels::Pixel, kSize> colors_{};
};

} // namespace Sorel
