// Writes pictures as PNG files.
#pragma once

#include "draw/OSBitmap.h"

#include <string>

namespace Sorel {

/// False with the reason in `problem` (if given).
bool writePngFile(IOSBitmap& bitmap, const std::string& path, std::string* problem);

} // namespace Sorel
