// Cutting texts.
#include "Text.h"

#include <cstring>

namespace vst2 {

void copyText(char* target, const char* source, std::size_t room) noexcept {
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
