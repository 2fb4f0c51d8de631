// libpng behind one function. Errors jump: nothing with a destructor lives in frames jumped over.
#include "PNGDecoder.h"

#include <csetjmp>
#include <png.h>

namespace Sorel {

namespace {

constexpr png_alloc_size_t kMaxChunkBytes = 8u << 20; // of texts and profiles, which nobody reads
constexpr int kMaxCachedChunks = 64;

[[noreturn]] void stop(png_structp png, png_const_charp) { png_longjmp(png, 1); }

void ignore(png_structp, png_const_charp) {}

void readBytes(png_structp png, png_bytep buffer, png_size_t length) {
    if (!static_cast<ISorelPNGStream*>(png_get_io_ptr(png))->read(buffer, length))
        png_error(png, "end of data");
}

/// Has every colour type come out as 8-bit blue, green, red, alpha.
void requestBgra(png_structp png, png_infop info) {
    const int colorType = png_get_color_type(png, info);
    if (colorType == PNG_COLOR_TYPE_PALETTE) png_set_palette_to_rgb(png);
    if ((colorType & PNG_COLOR_MASK_COLOR) == 0) png_set_gray_to_rgb(png);
    if (png_get_valid(png, info, PNG_INFO_tRNS) != 0)
        png_set_tRNS_to_alpha(png);
    else
        png_set_add_alpha(png, 255, PNG_FILLER_AFTER);
    if (png_get_bit_depth(png, info) == 16) png_set_strip_16(png);
    png_set_bgr(png);
}

void decode(png_structp png, png_infop info, IOSBitmap& surface) {
    if (setjmp(png_jmpbuf(png)) != 0) return;
    png_read_info(png, info);
    const auto width = static_cast<std::int32_t>(png_get_image_width(png, info));
    const auto height = static_cast<std::int32_t>(png_get_image_height(png, info));
    if (!surface.create(width, height)) return;
    requestBgra(png, info);
    const int passes = png_set_interlace_handling(png);
    png_read_update_info(png, info);
    if (png_get_rowbytes(png, info) != static_cast<png_size_t>(surface.stride)) return;
    for (int pass = 0; pass < passes; ++pass)
        for (std::int32_t y = 0; y < height; ++y)
            png_read_row(png, surface.getPixels() + std::ptrdiff_t{y} * surface.stride, nullptr);
    png_read_end(png, nullptr);
}

void premultiply(IOSBitmap& surface) {
    std::uint8_t* pixel = surface.getPixels();
    for (std::int64_t left = std::int64_t{surface.width} * surface.height; left > 0;
         --left, pixel += 4) {
        const unsigned alpha = pixel[3];
        for (int c = 0; c < 3; ++c)
            pixel[c] = static_cast<std::uint8_t>(pixel[c] * alpha >> 8);
    }
    surface.findOpaque();
}

} // namespace

bool decodePng(ISorelPNGStream& stream, IOSBitmap& surface) {
    surface.destroy();
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, stop, ignore);
    png_infop info = png != nullptr ? png_create_info_struct(png) : nullptr;
    if (info != nullptr) {
        png_set_user_limits(png, IOSBitmap::kMaxSide, IOSBitmap::kMaxSide);
        png_set_chunk_cache_max(png, kMaxCachedChunks);
        png_set_chunk_malloc_max(png, kMaxChunkBytes);
        // The limit above only warns: what nobody reads is passed over without taking memory.
        static const png_byte kUnread[] = "iCCP\0iTXt\0sPLT\0tEXt\0zTXt\0eXIf\0pCAL\0sCAL";
        png_set_keep_unknown_chunks(png, PNG_HANDLE_CHUNK_NEVER, kUnread, 8);
        png_set_read_fn(png, &stream, readBytes);
        decode(png, info, surface);
    }
    png_destroy_read_struct(&png, &info, nullptr);
    if (surface.getPixels() == nullptr) return false;
    premultiply(surface);
    return true;
}

} // namespace Sorel
