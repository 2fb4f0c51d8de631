// Where the parts of a level meter stand, in pixels from the upper left corner.
#pragma once

#include "draw/Geometry.h"

/// Distances across count from a channel's outer edge inwards, so that one table serves both the
/// plain and the mirrored channel.
namespace Sorel::MeterLayout {

inline constexpr double kChannelWidth = 62.0;

inline constexpr double kNumbersEnd = 19.0;
inline constexpr double kTickFrom = 21.0;
inline constexpr double kTickTo = 23.0;
inline constexpr double kBedFrom = 24.0;
inline constexpr double kBedTo = 60.0;
inline constexpr double kBarMargin = 1.0; ///< between bed and bar, on each side
inline constexpr double kNameMiddle = 42.0;
inline constexpr double kDrMiddle = 31.0;

inline constexpr double kNameBaseline = 13.0;
inline constexpr int kHead = 42; ///< first row of the bars
inline constexpr int kFoot = 314;
inline constexpr int kHoldRows = 2;        ///< of the held peak
inline constexpr double kNumberDrop = 4.0; ///< from a tick's row to the baseline of its number
inline constexpr double kDrHead = 319.0;
inline constexpr double kDrBaseline = 330.0;
inline constexpr double kDrFoot = 334.0;

inline constexpr CRect kMonoOverBox{4.0, 19.0, 58.0, 35.0};
inline constexpr CRect kStereoOverBox{20.0, 19.0, 104.0, 35.0};
inline constexpr CRect kReadOut{20.0, 341.0, 104.0, 367.0};
inline constexpr double kReadOutMargin = 5.0;
inline constexpr double kReadOutBaselines[] = {352.0, 362.0};

} // namespace Sorel::MeterLayout
