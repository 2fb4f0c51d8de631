// UTF-8 by characters: where they begin and end, and text made safe for one line.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Core::Utf8 {

inline constexpr char32_t kReplacement = 0xFFFD;

struct Decoded {
    char32_t code = 0;
    std::size_t length = 0;
};

/// The character at byte `at` (< size). A byte that begins none is U+FFFD of length 1; overlong
/// forms, surrogates and codes beyond U+10FFFF count as such.
Decoded decode(std::string_view text, std::size_t at);

/// Codes that are no characters become U+FFFD.
void append(std::string& out, char32_t code);

/// Well-formed text for a line: bad bytes become U+FFFD, controls and line separators spaces.
std::string oneLine(std::string_view text);

/// Where the character after the one at `at` begins, or the end.
std::size_t next(std::string_view text, std::size_t at);

/// The largest boundary between characters of well-formed `text` that is not beyond `maxBytes`.
std::size_t boundaryAtOrBefore(std::string_view text, std::size_t maxBytes);

/// Drawn together with the character before it: combining marks, variation selectors, joiners.
bool isExtending(char32_t code);

} // namespace Core::Utf8
