// Linear gradients: mixing of stops, position of pixels.
#include "Gradient.h"

namespace Sorel {

CColor CLinearGradient::at(double position) const {
    if (count == 0) return kTransparentCColor;
    if (!(position > stops[0].offset)) return stops[0].color;
    std::size_t i = 1;
    while (i < count && position >= stops[i].offset)
        ++i;
    if (i == count) return stops[count - 1].color;

    const Stop& a = stops[i - 1];
    const Stop& b = stops[i];
    const double amount = (position - a.offset) / (b.offset - a.offset);
    const double weightA = a.color.alpha * (1.0 - amount);
    const double weightB = b.color.alpha * amount;
    const double alpha = weightA + weightB;
    if (alpha <= 0.0) return b.color.withAlpha(0);
    const auto mix = [&](std::uint8_t ca, std::uint8_t cb) {
        return static_cast<std::uint8_t>((ca * weightA + cb * weightB) / alpha + 0.5);
    };
    return {mix(a.color.red, b.color.red), mix(a.color.green, b.color.green),
            mix(a.color.blue, b.color.blue), static_cast<std::uint8_t>(alpha + 0.5)};
}

CLinearGradient faded(CLinearGradient gradient, double factor) {
    for (std::size_t i = 0; i < gradient.count; ++i)
        gradient.stops[i].color = gradient.stops[i].color.faded(factor);
    return gradient;
}

GradientAxis::GradientAxis(const CLinearGradient& gradient) {
    const double dx = gradient.to.x - gradient.from.x;
    const double dy = gradient.to.y - gradient.from.y;
    const double squared = dx * dx + dy * dy;
    if (!(squared > 0.0) || !std::isfinite(squared)) return;
    perX_ = dx / squared;
    perY_ = dy / squared;
    offset_ = -(gradient.from.x * perX_ + gradient.from.y * perY_);
}

GradientTable::GradientTable(const CLinearGradient& gradient)
    : axis_(gradient) {
    for (int i = 0; i < kSize; ++i)
        colors_[static_cast<std::size_t>(i)] =
            Pixels::premultiplied(gradient.at(i / double{kSize - 1}));
}

void GradientTable::row(int x, int y, int count, Pixels::Pixel* out) const {
    double position = axis_.at(x + 0.5, y + 0.5) * (kSize - 1);
    const double step = axis_.perX() * (kSize - 1);
    for (int i = 0; i < count; ++i, position += step)
        out[i] =
            colors_[static_cast<std::size_t>(std::clamp(position, 0.0, double{kSize - 1}) + 0.5)];
}

} // namespace Sorel
