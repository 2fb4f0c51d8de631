// Pixels that the X server can read where they are.
#pragma once

#include "draw/OSBitmap.h"
#include "x11/X11Connection.h"

#include <xcb/shm.h>

#include <vector>

namespace Sorel {

/// Where pixels go: a window, and how it wants them.
struct X11Target {
    const X11Connection* connection = nullptr;
    xcb_drawable_t drawable = XCB_NONE;
    xcb_gcontext_t gc = XCB_NONE;
    X11PixelFormat format;
};

/// Whole pixels.
struct X11Area {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    bool isEmpty() const { return width <= 0 || height <= 0; }
};

/// The pixels that `rect` touches and that lie inside `width` by `height`.
X11Area areaInside(const CRect& rect, int width, int height);

/// Sends pixels through the connection, in pieces that every server accepts.
void putPixels(const X11Target& target, IOSBitmap& bitmap, const X11Area& source, int x, int y);

/// A bitmap in memory shared with the server; in plain memory where that cannot be had (another
/// machine, a sandbox). The segment goes by itself when both sides have let go of it.
class CX11Bitmap : public IOSBitmap {
  public:
    explicit CX11Bitmap(std::shared_ptr<X11Connection> connection)
        : connection_(std::move(connection)) {}
    ~CX11Bitmap() override { CX11Bitmap::destroy(); }

    std::uint8_t* getPixels() override { return pixels_; }
    bool create(std::int32_t newWidth, std::int32_t newHeight) override;
    void destroy() override;
    /// `platformContext` is an X11Target; sizes are those of the source.
    void blit(void* platformContext, const CRect* destRect, const CRect* srcRect) override;

    bool isShared() const { return segment_ != XCB_NONE; }
    const X11Connection* connection() const { return connection_.get(); }
    /// Puts `area` to the same place of the target. True when the server will tell that it has read
    /// the pixels, by an event; false when it has them already. `notify` asks for the event.
    bool put(const X11Target& target, const X11Area& area, int x, int y, bool notify);

  private:
    bool createShared();

    std::shared_ptr<X11Connection> connection_;
    std::uint8_t* pixels_ = nullptr;
    xcb_shm_seg_t segment_ = XCB_NONE;
    std::vector<std::uint8_t> memory_;
};

} // namespace Sorel
