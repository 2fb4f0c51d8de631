// Designs recursive filters: from frequencies, gain and order to second-order sections.
#pragma once

#include "core/RealTime.h"

#include <array>
#include <complex>

namespace Orvel {

enum class FilterKind : int {
    none = 0,
    lowPass = 1,
    highPass = 2,
    bandPass = 3,
    bandStop = 4,
    lowShelf = 5,
    highShelf = 6,
    bell = 7,
};

enum class FilterFamily : int { butterworth = 1, chebyshev1 = 2, chebyshev2 = 3 };

/// Classical filter design: analogue prototype, frequency transform, bilinear transform, sections.
///
/// What `frequency` marks: Butterworth -3.01 dB; Chebyshev I the end of the ripple (-`rippleDb`);
/// Chebyshev II the start of the stop band (-`stopbandDb`). Shelves and bells: half the gain in
/// decibels for Butterworth, 95 % of it for Chebyshev I, 5 % for Chebyshev II, with the ripple on
/// that side of the edge; a high shelf exchanges the two, so that the ripple of Chebyshev I always
/// lies below the frequency. For the band kinds it is the centre, and the two edges lie half of
/// `bandwidthOctaves` below and above.
/// Setters keep the old value when the new one is out of range or not finite.
/// Threads: one at a time. Fails: never; no call allocates.
/// Sources: bilinear transform with pre-warped edges; the shelves follow S. J. Orfanidis,
/// "High-Order Digital Parametric Equalizer Design", J. Audio Eng. Soc. 53 (2005).
class IIRFilterDesign {
  public:
    static constexpr int kMaximumOrder = 25;
    /// The most sections a design can have: the band kinds double the order.
    static constexpr int kMaximumSections = kMaximumOrder;

    /// Hz, above 0.
    void setSampleRate(double sampleRate);
    /// Hz, above 0. `Design` limits it to 0.4995 of the sample rate.
    void setFrequency(double frequency);
    /// Distance of the edges of the band kinds, 0 or more.
    void setBandwidth(double octaves);
    /// Of shelves and bell, decibels from -200 to 200. Within 0.001 of 0 they are designed as unit
    /// sections.
    void setGain(double decibels);
    void setKind(FilterKind kind);
    /// 1 to kMaximumOrder; the band kinds come out with twice the order.
    void setOrder(int order);
    void setFamily(FilterFamily family);
    /// Depth of the ripple of Chebyshev I, decibels above 0.
    void setRipple(double decibels);
    /// Attenuation from the edge on of Chebyshev II, decibels above 0.
    void setStopband(double decibels);

    FilterKind kind() const { return kind_; }
    int order() const { return order_; }
    /// Hz; before the limits that `Design` applies.
    double lowerEdge() const { return lowerEdge_; }
    double upperEdge() const { return upperEdge_; }
    /// Entries that `Design` fills.
    int sectionCount() const;

    /// Fills `sectionCount` entries of each array. Run in series, the sections do
    /// y[n] = b0 x[n] + b1 x[n-1] + b2 x[n-2] - a1 y[n-1] - a2 y[n-2].
    /// Pass kinds peak at 1 in their pass band, shelves and bell are 1 away from the boost or cut.
    void
    Design(double* b0, double* b1, double* b2, double* a1, double* a2) noexcept ORVEL_NONBLOCKING;

  private:
    using Complex = std::complex<double>;
    /// Design with a pass or stop band, or with a finite gain on both sides.
    enum class Type : int { pass = 1, shelf = 2 };

    bool isBandKind() const;
    bool isShelfKind() const;
    void updateEdges();
    void updatePrototype() noexcept;
    void buildPass() noexcept;
    void buildShelf() noexcept;
    /// Calls back with the index and angle of each prototype root, the real one last.
    template <typename Rule>
    void forEachRoot(Rule rule) noexcept;

    double sampleRate_ = 44100.0;
    double frequency_ = 1000.0;
    double bandwidthOctaves_ = 1.0;
    double lowerEdge_ = 707.10678118654752;
    double upperEdge_ = 1414.2135623730950;
    double gainDb_ = -12.04119982655924;
    FilterKind kind_ = FilterKind::lowPass;
    int order_ = 2;
    int designedOrder_ = 2;
    FilterFamily family_ = FilterFamily::butterworth;
    FilterFamily designedFamily_ = FilterFamily::butterworth;
    Type type_ = Type::pass;
    double rippleDb_ = 3.0102999566;
    double stopbandDb_ = 60.0;
    double prototypeGainDb_ = 0.0;
    double shelfPoint_ = 0.95;
    double shelfWidth_ = 0.05;
    int complexPairs_ = 1;
    bool hasRealPole_ = false;
    // Upper half-plane, the real one last. Pass edge at 1 rad/s; zeros may be at infinity.
    std::array<Complex, 13> prototypePoles_{};
    std::array<Complex, 13> prototypeZeros_{};
    bool dirty_ = true;
};

} // namespace Orvel
