// Shortens a text for its place, keeping the end: of a path that is what tells two apart.
#pragma once

#include "draw/DrawContext.h"

#include <string>

namespace Sorel {

/// The whole text, or "..." and the end of it, in the context's font; `width` in pixels.
std::string endThatFits(CDrawContext& context, const std::string& text, double width);

} // namespace Sorel
