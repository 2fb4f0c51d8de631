// The functions by which a host makes our objects.
#pragma once

#include "AAX.h"

class AAX_CEffectGUI;
class AAX_CEffectParameters;

namespace Vardo::Aax {

/// The host calls it without an argument, so each record of the module needs one of its own. Gives
/// an object with no reference yet, or null when memory is short.
using CreateParameters = AAX_CEffectParameters*(AAX_CALLBACK*)();
using CreateEditor = AAX_CEffectGUI*(AAX_CALLBACK*)();

/// As many records have a function of their own; those beyond share the last one's.
inline constexpr int kNumCreateFunctions = 10;

CreateParameters createParametersFunction(int recordIndex) noexcept;
CreateEditor createEditorFunction() noexcept;

} // namespace Vardo::Aax
