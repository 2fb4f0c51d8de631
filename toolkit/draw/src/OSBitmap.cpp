// Pixels in plain memory.
#include "draw/OSBitmap.h"

#include "draw/Renderer.h"

#include <cstring>
#include <new>

namespace Sorel {

namespace {

struct WholeRect {
    int left;
    int top;
    int width;
    int height;
};

WholeRect truncated(const CRect& r) {
    const auto whole = [](double v) { return static_cast<int>(std::clamp(v, -1e9, 1e9)); };
    return {whole(r.left), whole(r.top), whole(r.width()), whole(r.height())};
}

} // namespace

bool IOSBitmap::setDimensions(std::int32_t newWidth, std::int32_t newHeight) {
    if (newWidth < 0 || newHeight < 0) return false;
    newWidth = std::max(newWidth, 1);
    newHeight = std::max(newHeight, 1);
    if (newWidth > kMaxSide || newHeight > kMaxSide ||
        std::int64_t{newWidth} * newHeight > kMaxPixels)
        return false;
    width = newWidth;
    height = newHeight;
    stride = newWidth * 4;
    byteSize = stride * newHeight;
    isOpaque = false;
    return true;
}

void IOSBitmap::findOpaque() {
    const std::uint8_t* const pixels = getPixels();
    unsigned allAlphas = pixels != nullptr ? 255 : 0;
    for (std::ptrdiff_t alpha = 3; alpha < byteSize && allAlphas == 255; alpha += 4)
        allAlphas &= pixels[alpha];
    isOpaque = allAlphas == 255;
}

bool CMemoryBitmap::create(std::int32_t newWidth, std::int32_t newHeight) {
    destroy();
    if (!setDimensions(newWidth, newHeight)) return false;
    try {
        pixels_.assign(static_cast<std::size_t>(byteSize), 0);
    } catch (const std::bad_alloc&) {
        destroy();
        return false;
    }
    return true;
}

void CMemoryBitmap::destroy() {
    pixels_ = {};
    byteSize = width = height = stride = 0;
    isOpaque = false;
}

void CMemoryBitmap::blit(void* platformContext, const CRect* destRect, const CRect* srcRect) {
    auto* const target = static_cast<IOSBitmap*>(platformContext);
    if (pixels_.empty() || target == nullptr || target->getPixels() == nullptr) return;
    const WholeRect from =
        srcRect != nullptr ? truncated(*srcRect) : WholeRect{0, 0, width, height};
    const WholeRect to = destRect != nullptr ? truncated(*destRect) : from;
    if (from.width <= 0 || from.height <= 0 || to.width <= 0 || to.height <= 0) return;

    // The nearest pixel, as a plain copy does it.
    const auto nearest = [](std::int64_t i, int sourceStart, int sourceSize, int targetSize) {
        return sourceStart + i * sourceSize / targetSize;
    };
    const std::int64_t firstRow = std::max<std::int64_t>(0, -std::int64_t{to.top});
    const std::int64_t lastRow =
        std::min<std::int64_t>(to.height, std::int64_t{target->height} - to.top);
    const std::int64_t first = std::max<std::int64_t>(0, -std::int64_t{to.left});
    const std::int64_t last =
        std::min<std::int64_t>(to.width, std::int64_t{target->width} - to.left);
    for (std::int64_t j = firstRow; j < lastRow; ++j) {
        const std::int64_t y = nearest(j, from.top, from.height, to.height);
        if (y < 0 || y >= height) continue;
        const std::uint8_t* const source = pixels_.data() + y * stride;
        std::uint8_t* const row = target->getPixels() + (to.top + j) * target->stride;
        for (std::int64_t i = first; i < last; ++i) {
            const std::int64_t x = nearest(i, from.left, from.width, to.width);
            if (x >= 0 && x < width) std::memcpy(row + (to.left + i) * 4, source + x * 4, 4);
        }
    }
}

} // namespace Sorel
