// Texts into buffers that a host lends, whose size only convention tells.
#pragma once

#include <cstddef>
#include <cstring>

namespace vst2 {

/// Bytes that a host lends for a parameter's name, label or value, and for program names: 24
/// and the zero. More than the 8 of the interface's first days; no host in use lends less.
inline constexpr std::size_t kParameterTextRoom = 25;
/// Bytes for names of effect, product, vendor and pins, the zero included.
inline constexpr std::size_t kNameTextRoom = 64;

/// Copies what fits into `room` bytes, always with an ending zero, and never cuts a UTF-8
/// character in two. Null pointers are an empty text, or nothing to do.
inline void copyText(char* target, const char* source, std::size_t room) noexcept {
    if (target == nullptr || room == 0) return;
    if (source == nullptr) source = "";
    std::size_t length = strnlen(source, room);
    if (length == room) {
        --length;
        while (length > 0 && (static_cast<unsigned char>(source[length]) & 0xC0U) == 0x80U)
            --length;
    }
    std::memmove(target, source, length);
    target[length] = 0;
}

} // namespace vst2
