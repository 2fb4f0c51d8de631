// The inner loops of Pixels once more, for processors that take eight pixels at a time.
#pragma once

#include "Pixels.h"

/// Each does as many pixels from the left as fill whole groups of eight and gives their number, 0
/// where the processor cannot; the caller does the rest. The results are the same to the bit.
namespace Sorel::Pixels::Wide {

int blend(std::uint8_t* row, int count, CColor color);
int blend(std::uint8_t* row, int count, CColor color, const std::uint8_t* coverage);
/// At full coverage.
int blend(std::uint8_t* row, int count, const Pixel* source);

} // namespace Sorel::Pixels::Wide
