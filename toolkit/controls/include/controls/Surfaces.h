// The few raised and sunken surfaces that controls are made of.
#pragma once

#include "draw/DrawContext.h"

namespace Sorel {

/// A field to type or choose in: sunken, darker at the top. Whole-pixel rectangle.
void drawField(CDrawContext& context, const CRect& rect, double radius = 4.0);
/// The thin frame of a field that has the keyboard or an open menu.
void drawFieldFocus(CDrawContext& context, const CRect& rect, CColor color, double radius = 4.0);
/// A button's face. `lit` 0..255 turns it gold.
void drawRaised(CDrawContext& context, const CRect& rect, double radius = 4.0, int lit = 0);
/// A button with its caption; the text turns dark on a lit face.
void drawCommandButton(
    CDrawContext& context, const CRect& rect, const char* title, int lit = 0, bool active = true);

} // namespace Sorel
