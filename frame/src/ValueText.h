// Values of each kind as text, and back.
#pragma once

#include <cstddef>

namespace Vardo {

/// What the text of a value depends on besides the value.
struct ValueScale {
    int kind; ///< ValueKind
    float min;
    float max;
    const char* userText; ///< for kUserText; may be null
};

const char* unitOfKind(int kind);

/// Writes at `text`. The short form has fewer decimals.
void formatValueOfKind(
    const ValueScale& scale, float plain, char* text, std::size_t capacity, bool shortForm);

/// Reads what `formatValueOfKind` writes, or a bare number. Text that is neither counts as 0.
/// False when the value is to stay as it is.
bool parseValueOfKind(const ValueScale& scale, const char* text, float& plain);

} // namespace Vardo
