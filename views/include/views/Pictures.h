// The window's pictures, shared by all editors of the process.
#pragma once

#include "draw/PictureCache.h"

namespace Orvel {

/// Threads: GUI thread.
Sorel::CPictureCache& editorPictures();

/// The window has the size of its ground, "Background.png".
inline constexpr double kWidth = 1000.0;
inline constexpr double kHeight = 545.0;

} // namespace Orvel
