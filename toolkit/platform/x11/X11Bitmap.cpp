// Pixels that the X server can read where they are.
#include "x11/X11Bitmap.h"

#include <sys/ipc.h>
#include <sys/shm.h>

#include <algorithm>
#include <cstring>

namespace Sorel {

namespace {

/// Small enough for the core protocol's requests of 256 KB.
constexpr std::size_t kMaxPutBytes = 128 * 1024;

void swapBytes(std::vector<std::uint8_t>& pixels) {
    for (std::size_t i = 0; i + 3 < pixels.size(); i += 4) {
        std::swap(pixels[i], pixels[i + 3]);
        std::swap(pixels[i + 1], pixels[i + 2]);
    }
}

std::int16_t coordinate(int value) { return static_cast<std::int16_t>(value); }
std::uint16_t extent(int value) { return static_cast<std::uint16_t>(value); }

} // namespace

X11Area areaInside(const CRect& rect, int width, int height) {
    // Bounded before it becomes whole numbers.
    const CRect in =
        rect.intersected({0.0, 0.0, static_cast<double>(width), static_cast<double>(height)});
    if (!(in.right > in.left && in.bottom > in.top)) return {};
    const int x = static_cast<int>(std::floor(in.left));
    const int y = static_cast<int>(std::floor(in.top));
    return {x, y, static_cast<int>(std::ceil(in.right)) - x,
            static_cast<int>(std::ceil(in.bottom)) - y};
}

void putPixels(const X11Target& target, IOSBitmap& bitmap, const X11Area& source, int x, int y) {
    const std::uint8_t* pixels = bitmap.getPixels();
    if (pixels == nullptr || source.isEmpty()) return;
    const std::size_t rowBytes = static_cast<std::size_t>(source.width) * 4;
    const int rowsAPut = std::max(1, static_cast<int>(kMaxPutBytes / rowBytes));
    std::vector<std::uint8_t> piece;
    for (int row = 0; row < source.height; row += rowsAPut) {
        const int rows = std::min(rowsAPut, source.height - row);
        piece.resize(static_cast<std::size_t>(rows) * rowBytes);
        for (int i = 0; i < rows; ++i)
            std::memcpy(piece.data() + static_cast<std::size_t>(i) * rowBytes,
                        pixels + static_cast<std::ptrdiff_t>(source.y + row + i) * bitmap.stride +
                            static_cast<std::ptrdiff_t>(source.x) * 4,
                        rowBytes);
        if (target.format.swapped) swapBytes(piece);
        xcb_put_image(target.connection->xcb(), XCB_IMAGE_FORMAT_Z_PIXMAP, target.drawable,
                      target.gc, extent(source.width), extent(rows), coordinate(x),
                      coordinate(y + row), 0, target.format.depth,
                      static_cast<std::uint32_t>(piece.size()), piece.data());
    }
}

bool CX11Bitmap::create(std::int32_t newWidth, std::int32_t newHeight) {
    destroy();
    if (!setDimensions(newWidth, newHeight)) return false;
    if (createShared()) return true;
    memory_.assign(static_cast<std::size_t>(byteSize), 0);
    pixels_ = memory_.data();
    return true;
}

bool CX11Bitmap::createShared() {
    if (connection_->shmCompletionEvent() == 0 || connection_->isBroken()) return false;
    const int id = shmget(IPC_PRIVATE, static_cast<std::size_t>(byteSize), IPC_CREAT | 0600);
    if (id < 0) return false;
    void* memory = shmat(id, nullptr, 0);
    const bool hasMemory = reinterpret_cast<std::intptr_t>(memory) != -1;
    xcb_generic_error_t* error = nullptr;
    bool attached = false;
    if (hasMemory) {
        segment_ = xcb_generate_id(connection_->xcb());
        error = xcb_request_check(connection_->xcb(),
                                  xcb_shm_attach_checked(connection_->xcb(), segment_,
                                                         static_cast<std::uint32_t>(id), 1));
        attached = error == nullptr && !connection_->isBroken();
        std::free(error);
    }
    // From here on the segment lives only as long as somebody has it attached.
    shmctl(id, IPC_RMID, nullptr);
    if (attached) {
        pixels_ = static_cast<std::uint8_t*>(memory);
        return true;
    }
    if (hasMemory) shmdt(memory);
    segment_ = XCB_NONE;
    return false;
}

void CX11Bitmap::destroy() {
    if (segment_ != XCB_NONE) {
        xcb_shm_detach(connection_->xcb(), segment_);
        shmdt(pixels_);
        segment_ = XCB_NONE;
    }
    memory_ = {};
    pixels_ = nullptr;
    width = height = stride = byteSize = 0;
}

bool CX11Bitmap::put(const X11Target& target, const X11Area& area, int x, int y, bool notify) {
    if (pixels_ == nullptr || area.isEmpty()) return false;
    if (!isShared() || target.format.swapped || target.connection != connection_.get()) {
        putPixels(target, *this, area, x, y);
        return false;
    }
    xcb_shm_put_image(connection_->xcb(), target.drawable, target.gc, extent(width), extent(height),
                      extent(area.x), extent(area.y), extent(area.width), extent(area.height),
                      coordinate(x), coordinate(y), target.format.depth, XCB_IMAGE_FORMAT_Z_PIXMAP,
                      notify ? 1 : 0, segment_, 0);
    return notify;
}

void CX11Bitmap::blit(void* platformContext, const CRect* destRect, const CRect* srcRect) {
    if (platformContext == nullptr || pixels_ == nullptr) return;
    const auto& target = *static_cast<const X11Target*>(platformContext);
    const CRect all = CRect::ofSize(0.0, 0.0, width, height);
    const CRect& from = srcRect != nullptr ? *srcRect : all;
    const CRect& to = destRect != nullptr ? *destRect : from;
    const X11Area area = areaInside(from, width, height);
    put(target, area, static_cast<int>(to.left) + area.x - static_cast<int>(from.left),
        static_cast<int>(to.top) + area.y - static_cast<int>(from.top), false);
}

} // namespace Sorel
