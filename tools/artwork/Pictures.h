// All pictures of the editor, by the names under which it asks for them.
#pragma once

#include "Canvas.h"
#include "Lettering.h"
#include "PngWriter.h"

#include <array>
#include <string_view>

namespace Artwork {

struct Studio {
    Lettering& lettering;
    double scale;
};

// The ground of the whole window, 1000 by 545, opaque.
Canvas background(const Studio& studio);

// Buttons of the page bar, 138 by 90: off above, on below.
Canvas scopeButton(const Studio& studio);
Canvas spectrumButton(const Studio& studio);
Canvas stereofieldButton(const Studio& studio);
Canvas systemButton(const Studio& studio);

// Arrows of the preset browser, 18 by 42: at rest above, pressed below.
Canvas arrowDown(const Studio& studio);
Canvas arrowLeft(const Studio& studio);
Canvas arrowRight(const Studio& studio);

// Switches, 34 by 44: off above, on below.
Canvas plainSwitch(const Studio& studio);
Canvas greenSwitch(const Studio& studio);
Canvas orangeSwitch(const Studio& studio);

// The dial: its ground (72 by 76), 65 frames of its ring of LEDs (60 by 55) and of its cap (43 by
// 43).
Canvas dialGround(const Studio& studio);
Canvas dialRing(const Studio& studio);
Canvas dialCap(const Studio& studio);

// The small dial: its ground (41 by 41) and 128 frames of its cap (21 by 21).
Canvas smallDialGround(const Studio& studio);
Canvas smallDialCap(const Studio& studio);

struct Picture {
    std::string_view name;
    Canvas (*draw)(const Studio&);
    Rounding rounding = Rounding::nearest;
};

inline constexpr std::array<Picture, 16> kPictures = {{
    {"ArrowDownBig.png", arrowDown},
    {"ArrowLeftBig.png", arrowLeft},
    {"ArrowRightBig.png", arrowRight},
    {"Background.png", background, Rounding::dithered},
    {"ButtonScope.png", scopeButton},
    {"ButtonSpectrum.png", spectrumButton},
    {"ButtonStereofield.png", stereofieldButton},
    {"ButtonSystem.png", systemButton},
    {"NormalDial.png", dialCap},
    {"NormalDialBG.png", dialGround},
    {"NormalDialLedRing.png", dialRing},
    {"OnOff_Button.png", plainSwitch},
    {"OnOff_ButtonGreen.png", greenSwitch},
    {"OnOff_ButtonOrange.png", orangeSwitch},
    {"TolvaneDial.png", smallDialCap},
    {"TolvaneDialBG.png", smallDialGround},
}};

} // namespace Artwork
