// Source of the pairs of letters: the blocks of the Unicode Character Database (CaseFolding.txt).
#include "NaturalOrder.h"

#include "core/Utf8.h"

namespace Sorel {

namespace {
bool isDigit(char c) { return c >= '0' && c <= '9'; }

char32_t takeCharacter(std::string_view& text) {
    const Core::Utf8::Decoded next = Core::Utf8::decode(text, 0);
    text.remove_prefix(next.length);
    return next.code;
}

/// Small letters for capitals: Latin, Greek and Cyrillic.
char32_t folded(char32_t c) {
    const auto isIn = [c](char32_t from, char32_t to) { return c >= from && c <= to; };
    if (isIn('A', 'Z') || (isIn(0xC0, 0xDE) && c != 0xD7)) return c + 0x20;
    if (isIn(0x391, 0x3A9) || isIn(0x410, 0x42F)) return c + 0x20;
    if (isIn(0x400, 0x40F)) return c + 0x50;
    // Pairs side by side, the capital at an even place, or at an odd one.
    if (isIn(0x100, 0x137) || isIn(0x14A, 0x177) || isIn(0x460, 0x481)) return c | 1U;
    if (isIn(0x139, 0x148) || isIn(0x179, 0x17E)) return c + (c & 1U);
    return c;
}

std::string_view takeNumber(std::string_view& text) {
    std::size_t length = 0;
    while (length < text.size() && isDigit(text[length]))
        ++length;
    std::string_view digits = text.substr(0, length);
    text.remove_prefix(length);
    while (digits.size() > 1 && digits.front() == '0')
        digits.remove_prefix(1);
    return digits;
}
} // namespace

bool naturallyBefore(std::string_view a, std::string_view b) {
    const std::string_view wholeA = a;
    const std::string_view wholeB = b;
    while (!a.empty() && !b.empty()) {
        if (isDigit(a.front()) && isDigit(b.front())) {
            const std::string_view numberA = takeNumber(a);
            const std::string_view numberB = takeNumber(b);
            if (numberA.size() != numberB.size()) return numberA.size() < numberB.size();
            if (numberA != numberB) return numberA < numberB;
            continue;
        }
        const char32_t letterA = folded(takeCharacter(a));
        const char32_t letterB = folded(takeCharacter(b));
        if (letterA != letterB) return letterA < letterB;
    }
    if (a.empty() != b.empty()) return a.empty();
    return wholeA < wholeB;
}

} // namespace Sorel
