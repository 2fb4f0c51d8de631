// The name of the note a frequency belongs to.
#pragma once

#include <string>

namespace Sorel {

/// "C1" for 261.626 Hz: the note at or below `hz`, and its octave. All between 466.164 Hz and the
/// next C counts as B. Frequencies below 1 Hz count as 1 Hz.
std::string noteName(double hz);

} // namespace Sorel
