// Pictures from anywhere: whatever the bytes, a loaded picture has pixels, all of them
// premultiplied, and can be drawn.
//
// libpng stops at the first wrong checksum, which mutated bytes nearly always have. The first byte
// of the input therefore says whether the checksums of its chunks are put right first.
#include "draw/Bitmap.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>
#include <zlib.h>

namespace {

class MemoryStream : public Sorel::ISorelPNGStream {
  public:
    explicit MemoryStream(std::vector<std::uint8_t> bytes)
        : bytes_(std::move(bytes)) {}
    bool read(void* buffer, std::size_t length) override {
        if (length > bytes_.size() - position_) return false;
        std::memcpy(buffer, bytes_.data() + position_, length);
        position_ += length;
        return true;
    }

  private:
    std::vector<std::uint8_t> bytes_;
    std::size_t position_ = 0;
};

std::uint32_t bigEndian(const std::uint8_t* p) {
    return std::uint32_t{p[0]} << 24 | std::uint32_t{p[1]} << 16 | std::uint32_t{p[2]} << 8 | p[3];
}

void mendChecksums(std::vector<std::uint8_t>& file) {
    constexpr std::size_t kSignature = 8;
    constexpr std::size_t kAroundData = 12; // length, type and checksum
    for (std::size_t at = kSignature; at + kAroundData <= file.size();) {
        const std::size_t length = bigEndian(&file[at]);
        if (length > file.size() - at - kAroundData) return;
        const auto sum =
            static_cast<std::uint32_t>(crc32(0, &file[at + 4], static_cast<uInt>(length + 4)));
        for (std::size_t i = 0; i < 4; ++i)
            file[at + 8 + length + i] = static_cast<std::uint8_t>(sum >> (24 - 8 * i));
        at += length + kAroundData;
    }
}

void require(bool condition) {
    if (!condition) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    std::vector<std::uint8_t> file(data + 1, data + size);
    if ((data[0] & 1) != 0) mendChecksums(file);
    // Large empty pictures are legal and only cost time. Their sizes stand in bytes 16 to 23.
    if (file.size() > 24 && std::uint64_t{bigEndian(&file[16])} * bigEndian(&file[20]) > 1u << 16)
        return 0;

    MemoryStream stream(std::move(file));
    Sorel::CBitmap bitmap;
    const bool loaded = bitmap.loadFromStream(&stream);
    Sorel::IOSBitmap& surface = bitmap.surface();
    require(loaded == bitmap.isLoaded());
    require(loaded == (surface.getPixels() != nullptr));
    require(bitmap.getWidth() == surface.width && bitmap.getHeight() == surface.height);
    for (int i = 0; i < surface.byteSize; i += 4) {
        const std::uint8_t* const p = surface.getPixels() + i;
        require(p[0] <= p[3] && p[1] <= p[3] && p[2] <= p[3]);
    }
    static Sorel::CBitmap canvas(64, 64);
    bitmap.draw(canvas.context(), {-3.0, -3.0, 61.0, 61.0}, {1.0, 2.0});
    return 0;
}
