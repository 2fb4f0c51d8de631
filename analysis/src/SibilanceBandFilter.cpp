#include "analysis/SibilanceBandFilter.h"

#include "SampleCount.h"

#include <algorithm>
#include <cmath>

namespace Orvel {

namespace {
// Added before each section: decaying states stop here and never become denormal.
constexpr double kDenormalGuard = 1e-19;
constexpr double kCloseEnough = 1; // Hz

/// How a cut frequency approaches its target: by a share of the way per chunk, and by no more than
/// a ratio.
struct Glide {
    double share;
    double ratio;
};
constexpr Glide kGlide = {0.505, 8.05};
constexpr Glide kSteepGlide = {0.505 - 0.4, 8.05 - 7.0095}; // for more than 24 dB per octave

/// The cache is fine at low frequencies and coarse at high ones: 0.4 Hz apart at 20 Hz, 26 Hz at
/// 8 kHz.
std::size_t cacheIndex(double hz) {
    const double x = hz / CSibilanceBandFilter::kHighestCut;
    return static_cast<std::size_t>((x * 21) / (x * 20 + 1) * 2756);
}
} // namespace

CSibilanceBandFilter::CSibilanceBandFilter() {
    low_.target = kLowestCut;
    high_.target = kHighestCut;
    design_.setFamily(FilterFamily::butterworth);
    design_.setKind(FilterKind::lowPass);
    setSampleRate(sampleRate_);
}

void CSibilanceBandFilter::setSampleRate(float sampleRate) {
    sampleRate_ = sampleRate;
    wipe();
}

void CSibilanceBandFilter::setSlope(Slope slope) {
    slope_ = slope;
    wipe();
}

void CSibilanceBandFilter::wipe() {
    chunkSamples_ = samplesIn(1, sampleRate_);
    design_.setSampleRate(double{sampleRate_});
    design_.setOrder(static_cast<int>(slope_) / 12);
    for (Cut* const cut : {&low_, &high_}) {
        cut->cache.resize(kCacheEntries * sections());
        cut->cached.assign(kCacheEntries, 0);
    }
    reset();
}

void CSibilanceBandFilter::setBand(double lowCut, double highCut) noexcept {
    low_.target = std::clamp(lowCut, 0.0, kHighestCut);
    high_.target = std::clamp(highCut, 0.0, kHighestCut);
}

void CSibilanceBandFilter::reset() noexcept {
    for (States* const states : {&highFirst_, &highSecond_, &lowFirst_, &lowSecond_, &lowAllPass_})
        *states = {};
    low_.current = kLowestCut;
    high_.current = kHighestCut;
    low_.chainIsCurrent = false;
    high_.chainIsCurrent = false;
}

void CSibilanceBandFilter::glide(Cut& cut) const noexcept {
    const double way = cut.target - cut.current;
    if (!(std::abs(way) > kCloseEnough)) return;
    const Glide& glide = slope_ > Slope::db24 ? kSteepGlide : kGlide;
    const double base = std::max(kLowestCut, cut.current);
    const double candidate = cut.current + kDenormalGuard + glide.share * way;
    cut.current =
        way > 0 ? std::min(candidate, base * glide.ratio) : std::max(candidate, base / glide.ratio);
    cut.chainIsCurrent = false;
}

void CSibilanceBandFilter::tune(Cut& cut) noexcept {
    glide(cut);
    if (cut.chainIsCurrent) return;
    const std::size_t index = cacheIndex(cut.current);
    Coefficients* const entry = cut.cache.data() + index * sections();
    if (cut.cached[index] == 0) {
        std::array<double, kMaximumSections> b0, b1, b2, a1, a2;
        design_.setFrequency(cut.current);
        design_.Design(b0.data(), b1.data(), b2.data(), a1.data(), a2.data());
        for (std::size_t i = 0; i < sections(); ++i)
            entry[i] = {b0[i], b1[i], b2[i], a1[i], a2[i]};
        cut.cached[index] = 1;
    }
    std::copy_n(entry, sections(), cut.chain.begin());
    cut.chainIsCurrent = true;
}

void CSibilanceBandFilter::process(
    const float* left, const float* right, int count, float* leftOut, float* rightOut) noexcept {
    for (int begin = 0; begin < count; begin += chunkSamples_) {
        const int chunk = std::min(chunkSamples_, count - begin);
        tune(high_);
        tune(low_);
        const auto run = [&](auto filterChunk) {
            (this->*filterChunk)(left + begin, right + begin, chunk, leftOut + begin,
                                 rightOut + begin);
        };
        switch (slope_) {
        case Slope::db12:
            run(&CSibilanceBandFilter::filter<1, true>);
            break;
        case Slope::db24:
            run(&CSibilanceBandFilter::filter<1, false>);
            break;
        case Slope::db48:
            run(&CSibilanceBandFilter::filter<2, false>);
            break;
        case Slope::db96:
            run(&CSibilanceBandFilter::filter<4, false>);
            break;
        }
    }
}

template <std::size_t kSections, bool kFirstOrder>
void CSibilanceBandFilter::filter(
    const float* left, const float* right, int count, float* leftOut, float* rightOut) noexcept {
    // Copies, so that states and coefficients may live in registers.
    const Chain highChain = high_.chain;
    const Chain lowChain = low_.chain;
    States highFirst = highFirst_, highSecond = highSecond_;
    States lowFirst = lowFirst_, lowSecond = lowSecond_, lowAllPass = lowAllPass_;

    const auto section = [](State& state, Frame x, const Coefficients& c) {
        x += kDenormalGuard;
        const Frame y = c.b0 * x + state.s1;
        state.s1 = c.b1 * x - c.a1 * y;
        if constexpr (!kFirstOrder) {
            state.s1 += state.s2;
            state.s2 = c.b2 * x - c.a2 * y;
        }
        return y;
    };
    const auto lowPass = [&](const Chain& chain, States& states, Frame x) {
        for (std::size_t i = 0; i < kSections; ++i)
            x = section(states[i], x, chain[i]);
        return x;
    };
    // The same poles, with the reversed denominator as numerator.
    const auto allPass = [&](const Chain& chain, States& states, Frame x) {
        for (std::size_t i = 0; i < kSections; ++i) {
            const Coefficients& c = chain[i];
            x = kFirstOrder ? section(states[i], x, {c.a1, 1, 0, c.a1, 0})
                            : section(states[i], x, {c.a2, c.a1, 1, c.a1, c.a2});
        }
        return x;
    };

    for (int i = 0; i < count; ++i) {
        Frame x = {double{left[i]}, double{right[i]}};
        x = lowPass(highChain, highFirst, x);
        x = lowPass(highChain, highSecond, x);
        const Frame passed = lowPass(lowChain, lowSecond, lowPass(lowChain, lowFirst, x));
        const Frame y = allPass(lowChain, lowAllPass, x) - passed;
        leftOut[i] = static_cast<float>(y[0]);
        rightOut[i] = static_cast<float>(y[1]);
    }

    highFirst_ = highFirst;
    highSecond_ = highSecond;
    lowFirst_ = lowFirst;
    lowSecond_ = lowSecond;
    lowAllPass_ = lowAllPass;
}

} // namespace Orvel
