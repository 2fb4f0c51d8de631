// The soft shadow under a popup menu.
#include "common/MenuShadow.h"

#include <array>
#include <cmath>
#include <vector>

namespace Sorel {

namespace {

constexpr double kDrop = 4.0;      // pixels below the panel
constexpr double kDeviation = 5.0; // of the Gaussian, pixels
constexpr double kRadius = 6.0;    // of the shadow's corners before it is softened
constexpr float kAlpha = 130.0F;
constexpr int kReach = 15;

/// Coverage of a rounded rectangle at a pixel, from the distance of the pixel's middle to its edge.
float coverage(const CRect& rect, double x, double y) {
    const CPoint c = rect.centre();
    const double dx = std::abs(x - c.x) - rect.width() * 0.5 + kRadius;
    const double dy = std::abs(y - c.y) - rect.height() * 0.5 + kRadius;
    const double outside = std::hypot(std::max(dx, 0.0), std::max(dy, 0.0));
    const double distance = outside + std::min(std::max(dx, dy), 0.0) - kRadius;
    return static_cast<float>(std::clamp(0.5 - distance, 0.0, 1.0));
}

/// Element `offset` of a row of the mask; also of a column, with the roles changed.
template <class Mask>
auto& at(Mask& mask, int row, int rowStep, int offset) {
    return mask.data()[static_cast<std::ptrdiff_t>(row) * rowStep + offset];
}

using Kernel = std::array<float, 2 * kReach + 1>;

Kernel gaussian() {
    Kernel kernel{};
    double sum = 0.0;
    for (int i = -kReach; i <= kReach; ++i)
        sum += std::exp(-i * i / (2.0 * kDeviation * kDeviation));
    for (int i = -kReach; i <= kReach; ++i)
        at(kernel, 0, 0, i + kReach) =
            static_cast<float>(std::exp(-i * i / (2.0 * kDeviation * kDeviation)) / sum);
    return kernel;
}

/// One direction of the blur; `step` is the distance between neighbours in it.
std::vector<float>
blurred(const std::vector<float>& in, int count, int lines, int step, int lineStep) {
    static const Kernel kernel = gaussian();
    std::vector<float> out(in.size());
    for (int line = 0; line < lines; ++line)
        for (int i = 0; i < count; ++i) {
            float sum = 0.0F;
            for (int k = std::max(-kReach, -i); k <= std::min(kReach, count - 1 - i); ++k)
                sum += at(kernel, 0, 0, k + kReach) * at(in, line, lineStep, (i + k) * step);
            at(out, line, lineStep, i * step) = sum;
        }
    return out;
}

} // namespace

void drawMenuShadow(IOSBitmap& bitmap, const CRect& panel) {
    const int width = bitmap.width;
    const int height = bitmap.height;
    const CRect caster = panel.moved(0.0, kDrop);
    std::vector<float> mask(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            at(mask, y, width, x) = coverage(caster, x + 0.5, y + 0.5);
    mask = blurred(mask, width, height, 1, width);
    mask = blurred(mask, height, width, width, 1);
    for (int y = 0; y < height; ++y) {
        std::uint8_t* pixel = bitmap.getPixels() + y * bitmap.stride;
        for (int x = 0; x < width; ++x, pixel += 4) {
            pixel[0] = pixel[1] = pixel[2] = 0;
            pixel[3] = static_cast<std::uint8_t>(std::lround(kAlpha * at(mask, y, width, x)));
        }
    }
}

} // namespace Sorel
