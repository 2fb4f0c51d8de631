// The soft shadow under a popup menu.
#pragma once

#include "draw/OSBitmap.h"

namespace Sorel {

/// Fills `bitmap` with the shadow of `panel` (pixels of the bitmap): black, softened by a Gaussian,
/// premultiplied. Sets every pixel.
void drawMenuShadow(IOSBitmap& bitmap, const CRect& panel);

} // namespace Sorel
