// Settings of a filter design, and the road from them to sections.
#include "analysis/IIRFilterDesign.h"

#include "IIRFilterDesignRoots.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace Orvel {

namespace {
constexpr double kPi = std::numbers::pi;
constexpr double kDbToNeper = 0.11512925464970228; // ln(10) / 20
constexpr double kHighestShare = 0.4995;           // of the sample rate; the tangent ends at 0.5
constexpr double kLowestShare = 1e-7;    // below, 1 + a1 + a2 has no digits left to normalise by
constexpr double kNarrowestBand = 0.999; // lower edge by upper edge
constexpr double kUnityDb = 0.001;
constexpr double kLargestGainDb = 200;

bool isPositive(double x) { return x > 0 && std::isfinite(x); }

struct Edges {
    double lower; // Hz
    double upper; // Hz; the only edge of kinds that have one
};

Edges limited(bool band, double frequency, double lower, double upper, double sampleRate) {
    const double lowest = sampleRate * kLowestShare;
    const double highest = sampleRate * kHighestShare;
    if (!band) return {0, std::clamp(frequency, lowest, highest)};
    upper = std::clamp(upper, lowest, highest);
    return {std::min(std::max(lower, lowest * kNarrowestBand), upper * kNarrowestBand), upper};
}

/// The analogue frequency in rad/s that the bilinear transform brings to `hz`.
double warped(double hz, double sampleRate) {
    return 2 * sampleRate * std::tan(6.283185307179586 * hz / sampleRate * 0.5);
}

/// Where the gain of a design is known, and is set.
double referenceAngle(FilterKind kind, double lowerWarped, double upperWarped, double sampleRate) {
    switch (kind) {
    case FilterKind::highPass:
    case FilterKind::lowShelf:
        return kPi;
    case FilterKind::bandPass: // the warped geometric centre
        return 2 * std::atan(std::sqrt(lowerWarped * upperWarped) / (2 * sampleRate));
    default:
        return 0;
    }
}
} // namespace

void IIRFilterDesign::setSampleRate(double sampleRate) {
    if (isPositive(sampleRate)) sampleRate_ = sampleRate;
}

void IIRFilterDesign::setFrequency(double frequency) {
    if (!isPositive(frequency)) return;
    frequency_ = frequency;
    updateEdges();
}

void IIRFilterDesign::setBandwidth(double octaves) {
    if (!(octaves >= 0) || !std::isfinite(octaves)) return;
    bandwidthOctaves_ = octaves;
    updateEdges();
}

void IIRFilterDesign::updateEdges() {
    lowerEdge_ = frequency_ / std::exp2(bandwidthOctaves_ / 2);
    upperEdge_ = lowerEdge_ * std::exp2(bandwidthOctaves_);
}

void IIRFilterDesign::setGain(double decibels) {
    if (std::abs(decibels) <= kLargestGainDb) gainDb_ = decibels;
}

void IIRFilterDesign::setKind(FilterKind kind) {
    if (kind >= FilterKind::none && kind <= FilterKind::bell) kind_ = kind;
}

void IIRFilterDesign::setOrder(int order) {
    if (order < 1 || order > kMaximumOrder) return;
    order_ = order;
    dirty_ = true;
}

void IIRFilterDesign::setFamily(FilterFamily family) {
    if (family < FilterFamily::butterworth || family > FilterFamily::chebyshev2) return;
    family_ = family;
    dirty_ = true;
}

void IIRFilterDesign::setRipple(double decibels) {
    if (!isPositive(decibels)) return;
    rippleDb_ = decibels;
    dirty_ = true;
}

void IIRFilterDesign::setStopband(double decibels) {
    if (!isPositive(decibels)) return;
    stopbandDb_ = decibels;
    dirty_ = true;
}

bool IIRFilterDesign::isBandKind() const {
    return kind_ == FilterKind::bandPass || kind_ == FilterKind::bandStop ||
           kind_ == FilterKind::bell;
}

bool IIRFilterDesign::isShelfKind() const {
    return kind_ == FilterKind::none || kind_ >= FilterKind::lowShelf;
}

int IIRFilterDesign::sectionCount() const { return isBandKind() ? order_ : (order_ + 1) / 2; }

void IIRFilterDesign::Design(double* b0, double* b1, double* b2, double* a1, double* a2) noexcept {
    const int sections = sectionCount();
    const auto put = [&](int i, const Section& section) {
        b0[i] = section.b0;
        b1[i] = section.b1;
        b2[i] = section.b2;
        a1[i] = section.a1;
        a2[i] = section.a2;
    };
    if (kind_ == FilterKind::none || (isShelfKind() && std::abs(gainDb_) <= kUnityDb)) {
        for (int i = 0; i < sections; ++i)
            put(i, Section{});
        return;
    }

    const Edges edges = limited(isBandKind(), frequency_, lowerEdge_, upperEdge_, sampleRate_);
    const double lower = warped(edges.lower, sampleRate_);
    const double upper = warped(edges.upper, sampleRate_);
    updatePrototype();

    // An even order has its ripple at the reference angle: off 1 by the depth of the ripple.
    double targetDb = 0;
    if (designedOrder_ % 2 == 0) {
        if (type_ == Type::pass && family_ == FilterFamily::chebyshev1) targetDb = -rippleDb_;
        if (type_ == Type::shelf && designedFamily_ == FilterFamily::chebyshev2)
            targetDb = shelfWidth_ * gainDb_;
    }
    const double target = std::exp(targetDb / sections * kDbToNeper);
    const double angle = referenceAngle(kind_, lower, upper, sampleRate_);

    int filled = 0;
    for (int root = 0; root < complexPairs_ + (hasRealPole_ ? 1 : 0); ++root) {
        const bool isReal = root == complexPairs_;
        const auto at = static_cast<std::size_t>(root);
        const RootPairs poles = transformRoot(kind_, prototypePoles_[at], isReal, lower, upper);
        const RootPairs zeros = transformRoot(kind_, prototypeZeros_[at], isReal, lower, upper);
        for (int i = 0; i < poles.count; ++i) {
            Section section = sectionOf(toDigital(zeros.pairs[i], sampleRate_),
                                        toDigital(poles.pairs[i], sampleRate_));
            section.normalise(angle, target);
            put(filled++, section);
        }
    }
}

} // namespace Orvel
