// Cutting texts.
#include "hosting/Text.h"

#include "core/Utf8.h"

#include <cstring>

namespace Vardo {

void copyText(char* target, const char* source, std::size_t room) noexcept {
    if (target == nullptr || room == 0) return;
    if (source == nullptr) source = "";
    const std::size_t length =
        Core::Utf8::boundaryAtOrBefore({source, strnlen(source, room)}, room - 1);
    std::memmove(target, source, length);
    target[length] = 0;
}

} // namespace Vardo
