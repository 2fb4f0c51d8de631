// Notes by number: 0 is the C of octave -2, 60 the C of octave 3.
#pragma once

#include <cstddef>

namespace Vardo {

/// Writes the name padded to two characters and the octave: "C 3", "C#3", "A -1".
void formatNote(int note, char* text, std::size_t capacity);

/// The note nearest to a frequency in Hz, where A3 is 440 Hz: 69 for 440, 60 for 261.626. Limited
/// to the notes of 1 Hz to 1 MHz; what is no frequency counts as the lowest.
int noteAt(double hz);

/// Writes the name of that note without padding: "C3" for 261.626 Hz, "C#-1".
void formatNoteAt(double hz, char* text, std::size_t capacity);

/// Reads such a name, with or without spaces, in upper or lower case. False when it is none.
bool parseNote(const char* text, int& note);

} // namespace Vardo
