// The functions that a host calls on its audio thread, one for each pair of stems.
#pragma once

#include "AlgorithmContext.h"
#include "EffectTexts.h"

namespace Vardo::Aax {

/// Renders the instances from `begin` up to, not including, `end`.
using RenderFunction = void(AAX_CALLBACK*)(AlgorithmContext* const begin[], const void* end);

RenderFunction renderFunction(Algorithm algorithm) noexcept;

} // namespace Vardo::Aax
