// Poles and zeros on their way from the analogue prototype to digital sections.
#pragma once

#include "analysis/IIRFilterDesign.h"

#include <complex>
#include <limits>

namespace Orvel {

/// A zero that an analogue filter has at infinite frequency.
inline constexpr std::complex<double> kAtInfinity{std::numeric_limits<double>::infinity(), 0};
inline bool isAtInfinity(std::complex<double> s) {
    return s.real() == std::numeric_limits<double>::infinity();
}

/// One or two roots whose polynomial has real coefficients: a conjugate pair, two real roots, or a
/// single real one.
struct RootPair {
    std::complex<double> first;
    std::complex<double> second;
    bool single = false;
};

/// What one prototype root (with its conjugate, when it is not real) becomes: one pair, or two for
/// the band kinds.
struct RootPairs {
    RootPair pairs[2];
    int count = 1;
};

/// Frequency transform of a prototype with its edge at 1 rad/s. `lower` and `upper` are the
/// pre-warped edges in rad/s; the kinds with one edge use `upper`.
RootPairs transformRoot(
    FilterKind kind, std::complex<double> root, bool isReal, double lower, double upper) noexcept;

/// Bilinear transform of both roots.
RootPair toDigital(const RootPair& analogue, double sampleRate) noexcept;

/// y[n] = b0 x[n] + b1 x[n-1] + b2 x[n-2] - a1 y[n-1] - a2 y[n-2]
struct Section {
    double b0 = 1;
    double b1 = 0;
    double b2 = 0;
    double a1 = 0;
    double a2 = 0;

    /// |H| at an angle (pi is half the sample rate).
    double magnitudeAt(double angle) const noexcept;
    /// Scales the numerator so that |H| at the angle becomes `target`.
    void normalise(double angle, double target) noexcept;
};

Section sectionOf(const RootPair& zeros, const RootPair& poles) noexcept;

} // namespace Orvel
