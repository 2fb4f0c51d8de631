// Moves prototype roots to their frequency and into the digital domain.
#include "IIRFilterDesignRoots.h"

#include <cmath>

namespace Orvel {

namespace {
using Complex = std::complex<double>;

RootPair pairOf(Complex s, bool isReal) {
    return isReal ? RootPair{s, {}, true} : RootPair{s, std::conj(s), false};
}

RootPairs onePair(Complex s, bool isReal) { return {{pairOf(s, isReal), {}}, 1}; }

/// Both roots of s^2 - sum s + product, the larger first, with no digits lost in the smaller.
void solve(Complex sum, double product, Complex& larger, Complex& smaller) {
    const Complex root = std::sqrt(sum * sum - 4 * product);
    const bool sameDirection = (sum * std::conj(root)).real() >= 0;
    larger = (sameDirection ? sum + root : sum - root) * 0.5;
    smaller = product / larger;
}

/// A root of the band kinds that solves s^2 - sum s + product = 0.
RootPairs bandRoot(Complex sum, double product, bool isReal) {
    Complex larger;
    Complex smaller;
    solve(sum, product, larger, smaller);
    if (isReal) return {{{larger, smaller}, {}}, 1};
    // The conjugate of the prototype root gives the conjugates of these two.
    return {{pairOf(larger, false), pairOf(smaller, false)}, 2};
}

RootPairs bandRootAtInfinity(const RootPair& pair, bool isReal) {
    return {{pair, pair}, isReal ? 1 : 2};
}

Complex toDigital(Complex s, double k) {
    return isAtInfinity(s) ? Complex{-1, 0} : (1.0 + k * s) / (1.0 - k * s);
}
} // namespace

RootPairs
transformRoot(FilterKind kind, Complex root, bool isReal, double lower, double upper) noexcept {
    const double product = lower * upper;
    const double width = upper - lower;
    switch (kind) {
    case FilterKind::highPass:
    case FilterKind::highShelf:
        return onePair(isAtInfinity(root) ? Complex{} : upper / root, isReal);
    case FilterKind::bandPass:
    case FilterKind::bell:
        if (isAtInfinity(root)) return bandRootAtInfinity({{}, kAtInfinity}, isReal);
        return bandRoot(root * width, product, isReal);
    case FilterKind::bandStop: {
        const Complex centre{0, std::sqrt(product)};
        if (isAtInfinity(root)) return bandRootAtInfinity({centre, std::conj(centre)}, isReal);
        return bandRoot(width / root, product, isReal);
    }
    default:
        return onePair(isAtInfinity(root) ? root : upper * root, isReal);
    }
}

RootPair toDigital(const RootPair& analogue, double sampleRate) noexcept {
    const double k = 0.5 / sampleRate;
    return {toDigital(analogue.first, k), toDigital(analogue.second, k), analogue.single};
}

} // namespace Orvel
