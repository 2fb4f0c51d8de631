// Pixels in memory that a platform can copy to a window.
#pragma once

#include "draw/Geometry.h"

#include <cstdint>
#include <vector>

namespace Sorel {

/// A block of 32-bit pixels: blue, green, red, alpha in memory, colours premultiplied by alpha, the
/// top row first. Sizes are pixels, `stride` and `byteSize` bytes.
class IOSBitmap {
  public:
    std::int32_t byteSize = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int32_t stride = 0;
    /// Known to have no pixel that lets anything through; whoever changes pixels says so.
    bool isOpaque = false;
    /// Looks at all pixels and sets `isOpaque`.
    void findOpaque();

    /// Larger pictures are refused; a hostile file must not make us take all memory.
    static constexpr std::int32_t kMaxSide = 32767;
    static constexpr std::int64_t kMaxPixels = std::int64_t{64} << 20;

    IOSBitmap() = default;
    IOSBitmap(const IOSBitmap&) = delete;
    IOSBitmap& operator=(const IOSBitmap&) = delete;
    virtual ~IOSBitmap() = default;
    /// Null before `create` and after `destroy`.
    virtual std::uint8_t* getPixels() = 0;
    /// Drops earlier pixels and makes new, transparent ones; 0 becomes 1. False, with no pixels,
    /// for sizes that are negative or beyond the limits.
    virtual bool create(std::int32_t newWidth, std::int32_t newHeight) = 0;
    virtual void destroy() = 0;
    /// Copies `srcRect` (null: all of it) to `destRect` (null: same size, same place) of the
    /// platform's drawing target; coordinates are truncated to whole pixels. Does nothing without
    /// pixels or target.
    virtual void blit(void* platformContext, const CRect* destRect, const CRect* srcRect) = 0;
    /// Bits per pixel: 32.
    virtual int getDepth() const { return 32; }

  protected:
    /// Sets the four numbers, or false when the size is refused.
    bool setDimensions(std::int32_t newWidth, std::int32_t newHeight);
};

/// Pixels in plain memory, for pictures and off-screen work. Its blit target is another IOSBitmap
/// (as `void*` from an `IOSBitmap*`); pixels are copied, not blended, and stretched when the sizes
/// differ.
class CMemoryBitmap : public IOSBitmap {
  public:
    std::uint8_t* getPixels() override { return pixels_.empty() ? nullptr : pixels_.data(); }
    bool create(std::int32_t newWidth, std::int32_t newHeight) override;
    void destroy() override;
    void blit(void* platformContext, const CRect* destRect, const CRect* srcRect) override;

  private:
    std::vector<std::uint8_t> pixels_;
};

} // namespace Sorel
