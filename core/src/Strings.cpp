#include "core/Strings.h"

#include "core/Utf8.h"

namespace Core {

void CString::assign(const char* text) {
    if (text == characters_) return;
    const std::string_view whole(text, text == nullptr ? 0 : strnlen(text, capacity_));
    const std::size_t length = Utf8::boundaryAtOrBefore(whole, capacity_ - 1);
    // memmove: the text may be a tail of our own buffer.
    if (length > 0) std::memmove(characters_, text, length);
    characters_[length] = 0;
}

int CString::compare(const char* text) const {
    return std::strncmp(characters_, text == nullptr ? "" : text, capacity_ - 1);
}

} // namespace Core
