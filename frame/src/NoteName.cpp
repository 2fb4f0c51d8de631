#include "frame/NoteName.h"

#include "core/NumberText.h"

#include <algorithm>
#include <cmath>

namespace Vardo {

namespace {
constexpr const char* kNames[12] = {"C ", "C#", "D ", "D#", "E ", "F ",
                                    "F#", "G ", "G#", "A ", "A#", "B "};
constexpr int kLowestOctave = -2;
constexpr double kConcertPitchHz = 440;
constexpr int kConcertPitchNote = 69; // A 3

int floorDivide(int a, int b) { return a >= 0 ? a / b : -((b - 1 - a) / b); }

char upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }
} // namespace

void formatNote(int note, char* text, std::size_t capacity) {
    const int octave = floorDivide(note, 12);
    Core::TextWriter(text, capacity)
        .text(kNames[note - octave * 12])
        .integer(octave + kLowestOctave);
}

int noteAt(double hz) {
    const double limited = hz >= 1.0 ? std::min(hz, 1e6) : 1.0;
    return kConcertPitchNote +
           static_cast<int>(std::lround(12 * std::log2(limited / kConcertPitchHz)));
}

void formatNoteAt(double hz, char* text, std::size_t capacity) {
    const int note = noteAt(hz);
    const int octave = floorDivide(note, 12);
    const char* const name = kNames[note - octave * 12];
    const char unpadded[3] = {name[0], name[1] == ' ' ? '\0' : name[1], 0};
    Core::TextWriter(text, capacity).text(unpadded).integer(octave + kLowestOctave);
}

bool parseNote(const char* text, int& note) {
    char packed[16];
    std::size_t length = 0;
    for (; *text != 0; ++text) {
        if (*text == ' ') continue;
        if (length + 1 == sizeof packed) return false;
        packed[length++] = *text;
    }
    packed[length] = 0;
    if (length < 2) return false;

    const char letter = upper(packed[0]);
    const bool sharp = packed[1] == '#';
    const char* const octaveText = packed + (sharp ? 2 : 1);
    const char* rest = octaveText;
    const double octave = Core::parseNumber(octaveText, &rest);
    if (rest == octaveText || *rest != 0 || octave < -100 || octave > 100) return false;

    for (int index = 0; index < 12; ++index) {
        if (kNames[index][0] != letter || (kNames[index][1] == '#') != sharp) continue;
        note = (static_cast<int>(octave) - kLowestOctave) * 12 + index;
        return true;
    }
    return false;
}

} // namespace Vardo
