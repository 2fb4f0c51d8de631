// Second-order sections: coefficients from roots, and their gain.
#include "IIRFilterDesignRoots.h"

#include <cmath>

namespace Orvel {

Section sectionOf(const RootPair& zeros, const RootPair& poles) noexcept {
    Section section;
    section.b1 = -zeros.first.real();
    section.a1 = -poles.first.real();
    if (!zeros.single) {
        section.b1 = -(zeros.first + zeros.second).real();
        section.b2 = (zeros.first * zeros.second).real();
    }
    if (!poles.single) {
        section.a1 = -(poles.first + poles.second).real();
        section.a2 = (poles.first * poles.second).real();
    }
    return section;
}

double Section::magnitudeAt(double angle) const noexcept {
    const std::complex<double> z1{std::cos(angle), -std::sin(angle)}; // one sample of delay
    return std::abs((b0 + z1 * (b1 + z1 * b2)) / (1.0 + z1 * (a1 + z1 * a2)));
}

void Section::normalise(double angle, double target) noexcept {
    const double scale = target / magnitudeAt(angle);
    b0 *= scale;
    b1 *= scale;
    b2 *= scale;
}

} // namespace Orvel
