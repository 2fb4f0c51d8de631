// The band of a stereo signal between a low cut and a high cut, with gliding cut frequencies.
#pragma once

#include "analysis/IIRFilterDesign.h"
#include "core/RealTime.h"

#include <array>
#include <cstdint>
#include <vector>

namespace Orvel {

/// High cut: two equal Butterworth low passes in series, -6 dB at the cut. Low cut: the complement,
/// all-pass less both low passes, which has the mirrored slope and the same phase. Everything in
/// 64 bits. New cut frequencies are reached by a glide of some milliseconds.
/// Shape: two channels, any number of samples. Unit: linear amplitude.
/// Threads: `setBand`, `reset` and `process` on the analysing thread; the rest under the analysis
/// lock. Fails: std::bad_alloc from `setSampleRate` and `setSlope`; `process` designs sections when
/// a cut frequency is new, without allocating.
class CSibilanceBandFilter {
  public:
    /// Decibels per octave. The order of each of the two Butterworth passes is a twelfth of it.
    enum class Slope : int { db12 = 12, db24 = 24, db48 = 48, db96 = 96 };
    static constexpr double kHighestCut = 22050;
    static constexpr double kLowestCut = 20;

    CSibilanceBandFilter();

    /// Hz. Resets, and so does `setSlope`.
    void setSampleRate(float sampleRate);
    void setSlope(Slope slope);
    /// Where the cuts glide to, Hz; limited to 0..22050, and in effect to just below half the
    /// sample rate.
    void setBand(double lowCut, double highCut) noexcept ORVEL_NONBLOCKING;
    /// Silence behind, and both cuts back at the ends of the range, from where they glide.
    void reset() noexcept ORVEL_NONBLOCKING;

    /// The outputs may be the inputs.
    void process(const float* left,
                 const float* right,
                 int count,
                 float* leftOut,
                 float* rightOut) noexcept ORVEL_NONBLOCKING;

    /// Hz, as last glided to.
    double lowCut() const { return low_.current; }
    double highCut() const { return high_.current; }

  private:
    static constexpr std::size_t kMaximumSections = 4;
    static constexpr std::size_t kCacheEntries = 2800;

    struct Coefficients {
        double b0 = 1, b1 = 0, b2 = 0, a1 = 0, a2 = 0;
    };
    using Chain = std::array<Coefficients, kMaximumSections>;

    /// Left and right beside each other: the two channels are worked on at once.
    using Frame = double __attribute__((vector_size(16)));
    struct State {
        Frame s1{}, s2{};
    };
    using States = std::array<State, kMaximumSections>;

    /// A cut frequency, the sections for it, and those of frequencies that were visited before.
    struct Cut {
        double target = 0; // Hz
        double current = 0;
        bool chainIsCurrent = false;
        Chain chain;
        std::vector<Coefficients> cache; // kCacheEntries times the sections
        std::vector<std::uint8_t> cached;
    };

    std::size_t sections() const { return (static_cast<std::size_t>(slope_) / 12 + 1) / 2; }
    void wipe();
    void glide(Cut& cut) const noexcept;
    void tune(Cut& cut) noexcept;
    template <std::size_t kSections, bool kFirstOrder>
    void filter(
        const float* left, const float* right, int count, float* leftOut, float* rightOut) noexcept;

    float sampleRate_ = 44100.0F;
    Slope slope_ = Slope::db12;
    int chunkSamples_ = 44; // a millisecond
    IIRFilterDesign design_;
    Cut low_;
    Cut high_;
    States highFirst_, highSecond_;            // the high cut's two low passes
    States lowFirst_, lowSecond_, lowAllPass_; // the low cut's
};

} // namespace Orvel
