// Eight seconds of music made on the spot. Every voice adds to the mix; the mix is cut at the end.
#include "DemoSignal.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <numbers>

namespace Standalone {
namespace {

constexpr double kRate = DemoSignal::kSampleRate;
constexpr double kBeat = 0.5; // seconds: 120 beats per minute
constexpr int kBeats = 16;
constexpr double kTwoPi = 2 * std::numbers::pi;

// White noise from -1 to 1; the same sequence for the same seed on every machine.
class Noise {
  public:
    explicit Noise(std::uint32_t seed)
        : state_(seed) {}
    double operator()() {
        state_ = state_ * 1664525U + 1013904223U;
        return static_cast<double>(state_ >> 8) / 8388607.5 - 1.0;
    }

  private:
    std::uint32_t state_;
};

// State-variable filter of 12 dB per octave (Chamberlin); stable for frequencies below a sixth of
// the sample rate.
class StateVariableFilter {
  public:
    StateVariableFilter(double frequency, double damping)
        : coefficient_(2 * std::sin(std::numbers::pi * frequency / kRate))
        , damping_(damping) {}
    void step(double input) {
        low_ += coefficient_ * band_;
        high_ = input - low_ - damping_ * band_;
        band_ += coefficient_ * high_;
    }
    double band() const { return band_; }
    double high() const { return high_; }

  private:
    double coefficient_;
    double damping_;
    double low_ = 0;
    double band_ = 0;
    double high_ = 0;
};

class Mix {
  public:
    Mix(std::vector<float>& left, std::vector<float>& right)
        : left_(left)
        , right_(right) {}

    /// Adds `voice(seconds since start)` from `start` on; `pan` from -1 (left) to 1 (right), at
    /// equal power.
    template <class Voice>
    void add(double start, double length, double pan, Voice voice) {
        const double angle = (pan + 1) * std::numbers::pi / 4;
        const double toLeft = std::cos(angle);
        const double toRight = std::sin(angle);
        const auto first = static_cast<std::size_t>(start * kRate);
        const std::size_t end =
            std::min(left_.size(), first + static_cast<std::size_t>(length * kRate));
        for (std::size_t i = first; i < end; ++i) {
            const double sample = voice(static_cast<double>(i - first) / kRate);
            left_[i] += static_cast<float>(sample * toLeft);
            right_[i] += static_cast<float>(sample * toRight);
        }
    }

  private:
    std::vector<float>& left_;
    std::vector<float>& right_;
};

// Rises within 2 ms, falls to 1/e in `decay` seconds: no clicks.
double struck(double t, double decay) { return std::min(1.0, t / 0.002) * std::exp(-t / decay); }

void addBassDrum(Mix& mix, double start, double level) {
    mix.add(start, 0.4, 0, [&](double t) {
        // 48 Hz, reached from 190 Hz above: the phase is the integral of the falling frequency.
        const double phase = 48 * t + 190 * 0.03 * (1 - std::exp(-t / 0.03));
        return level * struck(t, 0.11) * std::sin(kTwoPi * phase);
    });
}

void addSnare(Mix& mix, double start, double level, std::uint32_t seed) {
    Noise noise(seed);
    StateVariableFilter rattle(2400, 1.1);
    mix.add(start, 0.25, -0.12, [&](double t) {
        rattle.step(noise());
        return level * (0.5 * struck(t, 0.05) * std::sin(kTwoPi * 185 * t) +
                        0.55 * struck(t, 0.07) * rattle.high());
    });
}

void addHiHat(Mix& mix, double start, double level, std::uint32_t seed) {
    Noise noise(seed);
    StateVariableFilter metal(7500, 1.2);
    mix.add(start, 0.08, 0.45, [&](double t) {
        metal.step(noise());
        return level * struck(t, 0.018) * metal.high();
    });
}

void addBass(Mix& mix, double start, double length, double frequency) {
    mix.add(start, length, 0, [&](double t) {
        double sum = 0;
        for (int harmonic = 1; harmonic <= 6; ++harmonic)
            sum += std::sin(kTwoPi * frequency * harmonic * t) / (harmonic * harmonic);
        const double fadeOut = std::clamp((length - t) / 0.01, 0.0, 1.0);
        return 0.3 * struck(t, 0.7) * fadeOut * sum;
    });
}

// Three notes, a little out of tune between the sides, which makes them wide.
void addChord(Mix& mix, double start, double length, const std::array<double, 3>& notes) {
    for (const double pan : {-0.9, 0.9}) {
        const double detune = 1 + 0.0021 * pan;
        mix.add(start, length, pan, [&](double t) {
            const double envelope =
                std::clamp(t / 0.2, 0.0, 1.0) * std::clamp((length - t) / 0.3, 0.0, 1.0);
            double sum = 0;
            for (const double note : notes)
                sum += std::sin(kTwoPi * note * detune * t + pan) +
                       0.3 * std::sin(kTwoPi * 2 * note * detune * t);
            return 0.035 * envelope * sum;
        });
    }
}

// An "ess" as a singer's: noise around 6 kHz that swells and fades.
void addHiss(Mix& mix, double start, std::uint32_t seed) {
    constexpr double length = 0.22;
    Noise noise(seed);
    StateVariableFilter teeth(7200, 0.35);
    mix.add(start, length, -0.2, [&](double t) {
        teeth.step(noise());
        const double swell = std::sin(std::numbers::pi * t / length);
        return 0.55 * swell * teeth.band();
    });
}

void addBar(Mix& mix, int bar) {
    const double start = bar * 4 * kBeat;
    constexpr std::array<double, 4> roots = {55.0, 43.654, 65.406, 48.999}; // A1 F1 C2 G1
    const double root = roots[static_cast<std::size_t>(bar)];
    const auto seed = static_cast<std::uint32_t>(100 * bar);

    for (int beat = 0; beat < 4; ++beat) {
        const double now = start + beat * kBeat;
        if (beat % 2 == 0)
            addBassDrum(mix, now, 0.62);
        else
            addSnare(mix, now, 0.55, seed + static_cast<std::uint32_t>(beat));
        addHiHat(mix, now, 0.16, seed + 20U + static_cast<std::uint32_t>(beat));
        addHiHat(mix, now + kBeat / 2, 0.24, seed + 30U + static_cast<std::uint32_t>(beat));
    }
    addBass(mix, start, 2.5 * kBeat, root);
    addBass(mix, start + 2.5 * kBeat, 0.5 * kBeat, root * 2);
    addBass(mix, start + 3 * kBeat, kBeat, root);
    addChord(mix, start, 4 * kBeat, {root * 4, root * 4 * 1.25992, root * 6});
    addHiss(mix, start + 1.25 * kBeat, seed + 50U);
    addHiss(mix, start + 3.5 * kBeat, seed + 60U);
}

} // namespace

DemoSignal::DemoSignal()
    : left_(static_cast<std::size_t>(kSampleRate) * kSeconds)
    , right_(left_.size()) {
    info_.path = "demonstration signal";
    info_.sampleRate = kSampleRate;
    info_.channels = 2;
    info_.frames = static_cast<std::int64_t>(left_.size());

    Mix mix(left_, right_);
    for (int bar = 0; bar < kBeats / 4; ++bar)
        addBar(mix, bar);
    // Somebody leans on the bass drum at the turn of the second bar and at the end.
    for (const int beat : {6, 12, 14})
        addBassDrum(mix, beat * kBeat, 0.9);

    for (std::vector<float>* channel : {&left_, &right_})
        for (float& sample : *channel)
            sample = std::clamp(sample, -kClipLevel, kClipLevel);
}

int DemoSignal::read(float* left, float* right, int frames) {
    const std::size_t count =
        std::min(left_.size() - position_, static_cast<std::size_t>(std::max(frames, 0)));
    std::copy_n(left_.begin() + static_cast<std::ptrdiff_t>(position_), count, left);
    std::copy_n(right_.begin() + static_cast<std::ptrdiff_t>(position_), count, right);
    position_ += count;
    return static_cast<int>(count);
}

void DemoSignal::seek(std::int64_t frame) {
    position_ = static_cast<std::size_t>(std::clamp<std::int64_t>(frame, 0, info_.frames));
}

} // namespace Standalone
