#include "analysis/PeakFollower.h"

#include <algorithm>
#include <cmath>

namespace Orvel {

namespace {
constexpr double kLn100 = 4.605170185988091;
constexpr double kAtOnceMs = 0.1;
// Far below the last bit of any level; keeps a long decay out of the denormal range.
constexpr double kFloor = 1e-24;

double poleOf(float timeMs, float sampleRate) {
    if (double{timeMs} <= kAtOnceMs) return 0;
    return std::exp(-kLn100 / (double{timeMs} * double{sampleRate} * 0.001));
}
} // namespace

double PeakFollower::Pole::toThe(int samples) noexcept {
    for (const Power& power : known)
        if (power.exponent == samples) return power.value;
    latest = 1 - latest;
    known[latest] = {samples, std::pow(factor, samples)};
    return known[latest].value;
}

void PeakFollower::setSampleRate(float sampleRate) {
    sampleRate_ = sampleRate;
    update();
}

void PeakFollower::setTimes(float attackMs, float releaseMs, float holdMs) {
    attackMs_ = attackMs;
    releaseMs_ = releaseMs;
    holdMs_ = holdMs;
    update();
}

void PeakFollower::update() {
    attack_.set(poleOf(attackMs_, sampleRate_));
    release_.set(poleOf(releaseMs_, sampleRate_));
    holdSamples_ = static_cast<int>(double{sampleRate_} * 0.001 * double{holdMs_});
}

void PeakFollower::reset() {
    value_ = 0;
    held_ = 0;
    holdCounter_ = 0;
}

double PeakFollower::advance(double input, int samples) noexcept {
    // Literal steps until what follows is plain holding or plain sliding; at most three.
    // Without a hold time it slides from the first step on.
    for (; samples > 0 && holdSamples_ > 0 && input > std::min(held_, value_); --samples)
        step(input);
    if (const int holding = std::min(samples, holdSamples_ - holdCounter_); holding > 0) {
        value_ = held_;
        holdCounter_ += holding;
        samples -= holding;
    }
    if (samples > 0) {
        Pole& pole = input > value_ ? attack_ : release_;
        held_ = input + (value_ - input) * pole.toThe(samples - 1);
        value_ = input + (held_ - input) * pole.factor;
        holdCounter_ = holdSamples_;
    }
    if (value_ < kFloor) value_ = 0;
    return value_;
}

} // namespace Orvel
