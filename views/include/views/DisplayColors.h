// The colours of everything that shows a measurement.
#pragma once

#include "draw/Geometry.h"

namespace Sorel {

/// One set for the program. Gold (`main`) is a value or the live edge of a measurement, lavender
/// lines are scales, red is over full scale, out of phase, or an over.
struct DisplayColors {
    CColor main{250, 200, 60, 225};
    CColor dim{125, 100, 30, 225};
    /// Numbers of rulers and axes: `dim`, with enough light to be read in passing.
    CColor number{166, 135, 48, 255};
    CColor white{255, 255, 255, 255};
    CColor text1{161, 163, 193, 200};
    CColor text2{161, 163, 193, 200};
    CColor line1{161, 163, 193, 130};
    CColor grid{161, 163, 193, 120};
    CColor gridDim{161, 163, 193, 60};
    CColor faint{161, 163, 193, 20};
    /// A waveform: its outline, which is thinner than a pixel, and its filling.
    CColor wave{226, 227, 242, 255};
    CColor waveFill{161, 163, 193, 195};
    CColor hot{237, 28, 36, 185};
    CColor good{181, 230, 29, 185};
    CColor warn{255, 164, 27, 185};
    CColor good2{181, 230, 29, 185};
    CColor warn2{255, 164, 27, 185};
    CColor bad{237, 28, 36, 185};
    CColor frame{161, 163, 193, 200};
    /// The wells that displays lie in.
    CColor panel{34, 37, 59, 255};
    /// Their ground near the top: for soft beds under texts.
    CColor ground{25, 27, 45, 255};
    /// Names of presets and of things switched on, titles.
    CColor bright{236, 236, 244, 235};
    /// Inside edge of wells, lines that part lanes.
    CColor darkLine{12, 13, 22, 150};
    /// Behind read-outs over a picture.
    CColor shade{0, 0, 0, 165};
};

/// The set that all views use.
const DisplayColors& displayColors();

} // namespace Sorel
