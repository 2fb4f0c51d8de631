// The colours that controls start with.
#pragma once

#include "draw/Geometry.h"

namespace Sorel::Palette {

inline constexpr CColor kGround{48, 47, 56, 255};
inline constexpr CColor kPanel{34, 37, 59, 255};
/// A value, or whatever the user works on.
inline constexpr CColor kGold{250, 200, 60, 255};
inline constexpr CColor kValue{250, 200, 60, 225};
inline constexpr CColor kLabel{161, 163, 193, 200};
inline constexpr CColor kLine{161, 163, 193, 255};
inline constexpr CColor kBright{236, 236, 244, 235};
inline constexpr CColor kSwitchGreen{181, 230, 29, 255};
inline constexpr CColor kSwitchOrange{255, 164, 27, 255};
/// Fields that one types or chooses in, top to bottom, with outline and lit lip below.
inline constexpr CColor kFieldTop{26, 27, 38, 255};
inline constexpr CColor kFieldBottom{33, 34, 47, 255};
inline constexpr CColor kFieldOutline{14, 14, 20, 170};
inline constexpr CColor kLip{255, 255, 255, 14};
/// Raised buttons, top to bottom, with outline, lit upper row and shadow below.
inline constexpr CColor kRaisedTop{76, 76, 92, 255};
inline constexpr CColor kRaisedBottom{62, 62, 76, 255};
inline constexpr CColor kRaisedOutline{20, 20, 27, 160};
inline constexpr CColor kRaisedLight{255, 255, 255, 30};
inline constexpr CColor kRaisedShadow{0, 0, 0, 70};
/// Boxes that one types numbers in, over a dial.
inline constexpr CColor kTypingBox{22, 23, 36, 255};

} // namespace Sorel::Palette
