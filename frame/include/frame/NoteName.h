// Notes by number: 0 is the C of octave -2, 60 the C of octave 3.
#pragma once

#include <cstddef>

namespace Vardo {

/// Writes the name padded to two characters and the octave: "C 3", "C#3", "A -1".
void formatNote(int note, char* text, std::size_t capacity);

/// Reads such a name, with or without spaces, in upper or lower case. False when it is none.
bool parseNote(const char* text, int& note);

} // namespace Vardo
