// Room for texts in buffers that a host lends, whose size only convention tells.
#pragma once

#include "hosting/Text.h"

#include <cstddef>

namespace vst2 {

/// Bytes that a host lends for a parameter's name, label or value, and for program names: 24
/// and the zero. More than the 8 of the interface's first days; no host in use lends less.
inline constexpr std::size_t kParameterTextRoom = 25;
/// Bytes for names of effect, product, vendor and pins, the zero included.
inline constexpr std::size_t kNameTextRoom = 64;

using Vardo::copyText;

} // namespace vst2
