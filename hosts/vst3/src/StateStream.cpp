// Bytes out, bytes in, with the stream never trusted.
#include "StateStream.h"

#include <algorithm>

namespace Vardo {

using Steinberg::IBStream;
using Steinberg::int32;
using Steinberg::kResultOk;

namespace {
// A stream that says more than it brings costs no more than this.
constexpr std::size_t kPiece = 1U << 16;

/// Two 32-bit numbers, little-endian.
struct Header {
    unsigned char bytes[8] = {};

    Header() = default;
    Header(std::uint32_t first, std::uint32_t second) {
        for (int i = 0; i < 4; ++i) {
            bytes[i] = static_cast<unsigned char>(first >> 8 * i);
            bytes[4 + i] = static_cast<unsigned char>(second >> 8 * i);
        }
    }
    std::uint32_t first() const { return number(bytes); }
    std::uint32_t second() const { return number(bytes + 4); }

  private:
    static std::uint32_t number(const unsigned char* from) {
        return from[0] | std::uint32_t{from[1]} << 8 | std::uint32_t{from[2]} << 16 |
               std::uint32_t{from[3]} << 24;
    }
};

bool writeAll(IBStream& stream, const void* data, std::size_t size) {
    int32 written = 0;
    // The interface takes a pointer that is not const, and does not write there.
    return stream.write(const_cast<void*>(data), static_cast<int32>(size), &written) == kResultOk &&
           written == static_cast<int32>(size);
}

/// How many of the bytes came.
std::size_t readAll(IBStream& stream, void* data, std::size_t size) {
    std::size_t got = 0;
    while (got < size) {
        int32 count = 0;
        const auto wanted = static_cast<int32>(size - got);
        const bool good =
            stream.read(static_cast<char*>(data) + got, wanted, &count) == kResultOk && count > 0;
        if (!good || count > wanted) break;
        got += static_cast<std::size_t>(count);
    }
    return got;
}
} // namespace

bool writeState(IBStream& stream, const void* chunk, std::uint32_t size) {
    const Header header(0, size);
    return writeAll(stream, header.bytes, sizeof header.bytes) && writeAll(stream, chunk, size);
}

StateRead readState(IBStream& stream) {
    StateRead state;
    Header header;
    state.headerCame = readAll(stream, header.bytes, sizeof header.bytes) == sizeof header.bytes;
    const std::size_t size = header.second();
    if (!state.headerCame || size == 0 || size > kLargestChunk) return state;

    std::vector<char> chunk;
    while (chunk.size() < size) {
        const std::size_t before = chunk.size();
        const std::size_t piece = std::min(kPiece, size - before);
        chunk.resize(before + piece);
        if (readAll(stream, chunk.data() + before, piece) != piece) return state;
    }
    state.chunk = std::move(chunk);
    return state;
}

bool writeBypass(IBStream& stream, bool bypassed) {
    const Header header(kBypassMark, bypassed ? 1 : 0);
    return writeAll(stream, header.bytes, sizeof header.bytes);
}

std::optional<bool> readBypass(IBStream& stream) {
    Header header;
    const bool ours = readAll(stream, header.bytes, sizeof header.bytes) == sizeof header.bytes &&
                      header.first() == kBypassMark;
    return ours ? std::optional(header.second() != 0) : std::nullopt;
}

} // namespace Vardo
