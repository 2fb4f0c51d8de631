// The scope's two scales: where beats and milliseconds lie in a picture that lasts one period.
#pragma once

#include <array>
#include <vector>

namespace Sorel {

struct RulerLine {
    int x = 0; ///< pixels from the left edge of the data
    double fade =
        1.0; ///< share of its strength; lines that would be next to invisible are left out
    bool heavy = false; ///< every fourth one of the beat ruler
    bool wholeBeat = false;
    std::array<char, 12> label{};
};

/// The lines of one scale from left to right. The finer half fades in while there is room for it,
/// so that zooming never makes a line jump out of nothing.
struct Ruler {
    int spacing = 0; ///< pixels from line to line
    std::vector<RulerLine> lines;
};

/// Beats and their fractions down to 1/32, or every second, fourth, ... beat in long periods.
/// Labels count beats from 0 and give fractions in between. `tempo` in beats per minute, `periodMs`
/// shown over `width` pixels. Empty when one of them is not positive.
void layOutBeats(Ruler& ruler, double tempo, double periodMs, int width);

/// Milliseconds in steps of 1, 3, 6, 12, 25, 50, 125, 250, 500, 1000, 2000, ...
void layOutTime(Ruler& ruler, double periodMs, int width);

/// The line nearest to `x`, at most `reach` pixels away; null for none.
const RulerLine* nearestLine(const Ruler& ruler, double x, double reach);

} // namespace Sorel
