// The colours of levels in spectra.
#pragma once

#include "draw/Path.h"

namespace Sorel {

/// From the top of a spectrum (+9 dB) to its bottom (-72 dB): red over full scale, amber at -6 dB,
/// green from -18 dB on, thinner and thinner below -30 dB. `footFactor` multiplies the alpha of
/// what is thinned.
CLinearGradient spectrumFill(double top, double bottom, double footFactor = 1.0);

/// The opaque colour of the waterfall at `level` (0 = -72 dB, 1 = +9 dB) and `depth` (0 = newest,
/// 1 = oldest). A shade over its foot lets the tops speak; the distance pales.
CColor waterfallColor(double level, double depth);

/// The well's ground, for what lies over a picture but under numbers.
inline constexpr CColor kWellShade{28, 30, 49, 255};

} // namespace Sorel
