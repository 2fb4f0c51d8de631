// The curve between a parameter's linear position and the position of its dial.
#pragma once

namespace Vardo {

/// Linear position to dial position, both 0..1. A skew above 0 opens the lower end of the range, 0
/// is a straight line. `taperToPlain` with the same skew is its inverse.
constexpr double plainToTaper(double x, double skew) {
    if (skew >= 0) return (1 + skew) * x / (1 + skew * x);
    return 1 - (1 - skew) * (1 - x) / (1 - skew * (1 - x));
}

constexpr double taperToPlain(double n, double skew) {
    if (skew <= 0) return (1 - skew) * n / (1 - skew * n);
    return 1 - (1 + skew) * (1 - n) / (1 + skew * (1 - n));
}

} // namespace Vardo
