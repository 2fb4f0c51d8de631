// Follows a level with attack, release and hold; the ballistics of meters and detectors.
#pragma once

#include "core/RealTime.h"

namespace Orvel {

/// Peak follower, defined per sample. A rise above the held value with a hold time jumps to it and
/// stays there for the hold; after that the output moves to the input by one pole, which covers 99
/// % of a step in the attack or release time. Shape: one channel. Unit: whatever goes in, 0 or more
/// (linear amplitude or decibels). Threads: one at a time. Fails: never; times of 0.1 ms or less
/// mean at once. Source: pole exp(-ln(100) / (t * sampleRate)).
class PeakFollower {
  public:
    /// Hz.
    void setSampleRate(float sampleRate);
    /// Milliseconds.
    void setTimes(float attackMs, float releaseMs, float holdMs);
    /// Back to an output of 0 and no hold.
    void reset();

    /// One sample. Gives the output.
    double step(double input) noexcept ORVEL_NONBLOCKING;

    /// `samples` steps with the same input, in closed form: the pole to the power of the steps
    /// instead of a loop. Agrees with `step` to 1e-12 of the larger of input and output.
    double advance(double input, int samples) noexcept ORVEL_NONBLOCKING;

    double value() const { return value_; }

  private:
    /// The factor by which the distance to the input shrinks per sample, with its last two powers:
    /// slices have the usual length, or what a block leaves over.
    struct Pole {
        struct Power {
            int exponent = 0;
            double value = 1;
        };
        double factor = 0;
        Power known[2];
        int latest = 0;

        void set(double newFactor) noexcept { *this = Pole{newFactor, {}, 0}; }
        double toThe(int samples) noexcept;
    };
    void update();

    float sampleRate_ = 44100.0F;
    float attackMs_ = 1.0F;
    float releaseMs_ = 1.0F;
    float holdMs_ = 0.0F;
    Pole attack_;
    Pole release_;
    double value_ = 0;
    int holdSamples_ = 0;
    int holdCounter_ = 0;
    double held_ = 0;
};

// In the header, so that a loop over samples keeps the state in registers.
inline double PeakFollower::step(double input) noexcept {
    int counter = holdCounter_;
    if (input > held_) {
        held_ = input;
        counter = 0;
    }
    double target = input;
    if (counter >= holdSamples_) {
        held_ = value_;
        holdCounter_ = holdSamples_;
    } else {
        holdCounter_ = counter + 1;
        target = held_;
    }
    const double pole = target > held_ ? attack_.factor : release_.factor;
    value_ = target + (held_ - target) * pole;
    return value_;
}

} // namespace Orvel
