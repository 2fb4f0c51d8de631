// Decodes PNG through libpng.
#pragma once

#include "draw/OSBitmap.h"
#include "draw/PNGStream.h"

namespace Sorel {

/// Creates `surface` in the size of the picture and fills it. The colours are premultiplied,
/// c * a >> 8. A stream that breaks off or is damaged leaves the rows decoded so far.
/// False, with no pixels, when not even the size could be read or is beyond the limits.
bool decodePng(ISorelPNGStream& stream, IOSBitmap& surface);

} // namespace Sorel
