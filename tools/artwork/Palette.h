// The colours that more than one picture uses. Every grey keeps a little blue.
#pragma once

#include "Paint.h"

namespace Artwork::Palette {

inline constexpr Colour kBlack = rgb(0, 0, 0);
inline constexpr Colour kWhite = rgb(255, 255, 255);
inline constexpr Colour kGold = rgb(250, 200, 60);
inline constexpr Colour kLavender = rgb(161, 163, 193);
inline constexpr Colour kBrightText = rgb(236, 236, 244, 235);

inline constexpr Colour kTrackTop = rgb(28, 29, 40); // the page bar's
inline constexpr Colour kTrackFoot = rgb(34, 35, 48);

} // namespace Artwork::Palette
