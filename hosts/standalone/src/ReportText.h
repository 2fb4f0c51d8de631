// Numbers and columns of the reports as text. The same in every locale.
#pragma once

#include <cstddef>
#include <string>

namespace Standalone {

/// The shortest text that reads back as the same number.
std::string shortNumber(float value);
std::string shortNumber(double value);
/// With a fixed number of digits behind the point.
std::string fixedNumber(double value, int digits);
/// Decibels of a linear level with two digits; "-oo" for level 0.
std::string decibels(double linear);

/// Filled up with blanks behind (padded) or in front (aligned) to `width` characters.
std::string padded(std::string text, std::size_t width);
std::string aligned(std::string text, std::size_t width);

} // namespace Standalone
