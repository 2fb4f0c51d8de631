// Numbers in files and chunks: little-endian, at any alignment, on every machine.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

namespace Core {

/// Four bytes at `bytes` as a number.
inline std::uint32_t readU32(const std::byte* bytes) noexcept {
    std::uint32_t value = 0;
    for (int i = 3; i >= 0; --i)
        value = value << 8 | std::to_integer<std::uint32_t>(bytes[i]);
    return value;
}

inline std::int32_t readI32(const std::byte* bytes) noexcept {
    return static_cast<std::int32_t>(readU32(bytes));
}

inline float readF32(const std::byte* bytes) noexcept {
    return std::bit_cast<float>(readU32(bytes));
}

inline void writeU32(std::byte* bytes, std::uint32_t value) noexcept {
    for (int i = 0; i < 4; ++i)
        bytes[i] = static_cast<std::byte>(value >> (8 * i) & 0xFF);
}

inline void writeI32(std::byte* bytes, std::int32_t value) noexcept {
    writeU32(bytes, static_cast<std::uint32_t>(value));
}

inline void writeF32(std::byte* bytes, float value) noexcept {
    writeU32(bytes, std::bit_cast<std::uint32_t>(value));
}

} // namespace Core
