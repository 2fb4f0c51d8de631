// Decodes UTF-8, whatever the bytes are.
#include "GlyphSource.h"

namespace Sorel {

char32_t nextCharacter(std::string_view& utf8) {
    constexpr char32_t kBad = 0xFFFD;
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(utf8[i]); };

    const unsigned first = byte(0);
    const std::size_t length = first < 0x80             ? 1
                               : (first & 0xE0) == 0xC0 ? 2
                               : (first & 0xF0) == 0xE0 ? 3
                               : (first & 0xF8) == 0xF0 ? 4
                                                        : 0;
    char32_t character = length == 1 ? first : first & (0x7Fu >> length);
    std::size_t used = 1;
    while (used < length && used < utf8.size() && (byte(used) & 0xC0) == 0x80)
        character = character << 6 | (byte(used++) & 0x3Fu);

    constexpr char32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
    const bool whole = length != 0 && used == length;
    utf8.remove_prefix(used);
    if (!whole || character < kSmallest[length] || character > 0x10FFFF ||
        (character >= 0xD800 && character <= 0xDFFF))
        return kBad;
    return character;
}

} // namespace Sorel
