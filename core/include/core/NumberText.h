// Numbers as text and back, the same in every country: hosts set the C locale as they like.
#pragma once

#include <cstddef>

namespace Core {

/// Appends text to a character buffer of known size. What does not fit is cut; the result is
/// always zero-ended. Never allocates.
class TextWriter {
  public:
    /// Writes from `begin` on; `capacity` counts the ending zero and is at least 1.
    TextWriter(char* begin, std::size_t capacity) noexcept;

    TextWriter& text(const char* characters) noexcept;
    /// As printf's "%.<decimals>f", at least `minWidth` characters wide, spaces in front.
    TextWriter& fixed(double value, int decimals, int minWidth = 0) noexcept;
    TextWriter& integer(long long value) noexcept;

  private:
    void append(const char* characters, std::size_t length) noexcept;

    char* end_;
    std::size_t room_; // characters that still fit before the zero
};

/// Reads the number at the start of `text`, after spaces and a sign (with spaces behind it too).
/// A decimal comma counts as a point. "inf" is accepted, "nan" is not.
/// `rest`, when given, gets what follows the number, or `text` itself when there is none.
/// Gives 0 when the text does not begin with a number.
double parseNumber(const char* text, const char** rest = nullptr) noexcept;

/// Compares without regard to upper and lower case of A to Z.
bool equalsIgnoringCase(const char* a, const char* b) noexcept;
/// Skips spaces and tabs.
const char* skipSpaces(const char* text) noexcept;

} // namespace Core
