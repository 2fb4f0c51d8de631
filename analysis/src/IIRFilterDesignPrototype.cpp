// The analogue prototypes of a filter design: poles and zeros for an edge at 1 rad/s.
#include "analysis/IIRFilterDesign.h"

#include "IIRFilterDesignRoots.h"

#include <cmath>
#include <numbers>

namespace Orvel {

namespace {
using Complex = std::complex<double>;

constexpr double kDbToNeper = 0.11512925464970228; // ln(10) / 20
constexpr double kUnitRadius = 0.9999999999999998; // a bit inside, so that no pole is outside
constexpr double kShelfFloor = 1.0;                // gain on the far side of a shelf: 0 dB

double amplitude(double decibels) { return std::exp(decibels * kDbToNeper); }

Complex onCircle(double radius, double theta, bool isReal) {
    return isReal ? Complex{-radius, 0} : radius * Complex{-std::sin(theta), std::cos(theta)};
}

/// Roots of 1 + C_N(s/j)^2 / sinh(N v)^2 lie on this ellipse, at the angles of the circle.
Complex onEllipse(double v, double theta, bool isReal) {
    if (isReal) return {-std::sinh(v), 0};
    return {-std::sinh(v) * std::sin(theta), std::cosh(v) * std::cos(theta)};
}

/// 1/s, or its conjugate: the one in the upper half-plane.
Complex inverted(Complex s) { return s / std::norm(s); }
} // namespace

void IIRFilterDesign::updatePrototype() noexcept {
    const Type type = isShelfKind() ? Type::shelf : Type::pass;
    if (type != type_) {
        type_ = type;
        dirty_ = true;
    }
    if (order_ != designedOrder_) {
        designedOrder_ = order_;
        dirty_ = true;
    }
    if (gainDb_ != prototypeGainDb_) {
        prototypeGainDb_ = gainDb_;
        dirty_ = true;
    }
    // A high shelf turns the frequency axis around, and with it the sides of ripple and no ripple.
    FilterFamily family = family_;
    if (kind_ == FilterKind::highShelf) {
        if (family_ == FilterFamily::chebyshev1) family = FilterFamily::chebyshev2;
        if (family_ == FilterFamily::chebyshev2) family = FilterFamily::chebyshev1;
    }
    if (family != designedFamily_) {
        designedFamily_ = family;
        dirty_ = true;
    }
    if (!dirty_) return;

    complexPairs_ = designedOrder_ / 2;
    hasRealPole_ = designedOrder_ % 2 == 1;
    if (type_ == Type::pass)
        buildPass();
    else
        buildShelf();
    dirty_ = false;
}

template <typename Rule>
void IIRFilterDesign::forEachRoot(Rule rule) noexcept {
    for (int k = 0; k < complexPairs_; ++k)
        rule(static_cast<std::size_t>(k), (2 * k + 1) * std::numbers::pi / 2 / designedOrder_,
             false);
    if (hasRealPole_) rule(static_cast<std::size_t>(complexPairs_), std::numbers::pi / 2, true);
}

void IIRFilterDesign::buildPass() noexcept {
    // Chebyshev I: |H|^2 = 1 / (1 + e^2 C_N(w)^2), Chebyshev II: 1 / (1 + 1 / (e^2 C_N(1/w)^2)).
    const bool first = designedFamily_ == FilterFamily::chebyshev1;
    const double ratio = std::expm1(2 * kDbToNeper * (first ? rippleDb_ : stopbandDb_));
    const double v = std::asinh(first ? 1 / std::sqrt(ratio) : std::sqrt(ratio)) / designedOrder_;

    forEachRoot([&](std::size_t i, double theta, bool isReal) {
        prototypeZeros_[i] = kAtInfinity;
        switch (designedFamily_) {
        case FilterFamily::butterworth:
            prototypePoles_[i] = onCircle(kUnitRadius, theta, isReal);
            break;
        case FilterFamily::chebyshev1:
            prototypePoles_[i] = onEllipse(v, theta, isReal);
            break;
        case FilterFamily::chebyshev2:
            prototypePoles_[i] = inverted(onEllipse(v, theta, isReal));
            if (!isReal) prototypeZeros_[i] = {0, 1 / std::cos(theta)};
            break;
        }
    });
}

void IIRFilterDesign::buildShelf() noexcept {
    // |H|^2 = (g^2 + f^2 e^2 F(w)^2) / (1 + e^2 F(w)^2) with the gains g at 0 and f at infinity,
    // F(w) = w^N, C_N(w) or 1 / C_N(1/w), and e such that |H(1)| is the gain `edge`.
    const double g = amplitude(prototypeGainDb_);
    const double f = kShelfFloor;
    const auto eSquared = [&](double edge) {
        return (g * g - edge * edge) / (edge * edge - f * f);
    };

    switch (designedFamily_) {
    case FilterFamily::butterworth: {
        const double e = std::sqrt((g * g - f * g) / (f * g - f * f)); // half the decibels at 1
        const double poleRadius = std::pow(e, -1.0 / designedOrder_);
        const double zeroRadius = std::pow(g / (f * e), 1.0 / designedOrder_);
        forEachRoot([&](std::size_t i, double theta, bool isReal) {
            prototypePoles_[i] = onCircle(poleRadius, theta, isReal);
            prototypeZeros_[i] = onCircle(zeroRadius, theta, isReal);
        });
        break;
    }
    case FilterFamily::chebyshev1: {
        const double e = std::sqrt(eSquared(amplitude(prototypeGainDb_ * shelfPoint_)));
        const double poleV = std::asinh(1 / e) / designedOrder_;
        const double zeroV = std::asinh(g / (f * e)) / designedOrder_;
        forEachRoot([&](std::size_t i, double theta, bool isReal) {
            prototypePoles_[i] = onEllipse(poleV, theta, isReal);
            prototypeZeros_[i] = onEllipse(zeroV, theta, isReal);
        });
        break;
    }
    case FilterFamily::chebyshev2: {
        const double e = std::sqrt(eSquared(amplitude(prototypeGainDb_ * shelfWidth_)));
        const double poleV = std::asinh(e) / designedOrder_;
        const double zeroV = std::asinh(f * e / g) / designedOrder_;
        forEachRoot([&](std::size_t i, double theta, bool isReal) {
            prototypePoles_[i] = inverted(onEllipse(poleV, theta, isReal));
            prototypeZeros_[i] = inverted(onEllipse(zeroV, theta, isReal));
        });
        break;
    }
    }
}

} // namespace Orvel
