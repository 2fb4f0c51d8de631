// Sliding maximum, transients and sibilance against plain twins and against theory.
#include "Signals.h"
#include "analysis/BufferMaxEnvelope.h"
#include "analysis/SibilanceDetector.h"
#include "analysis/TransientDetector.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <numbers>
#include <random>
#include <vector>

namespace Orvel {
namespace {

using orvel_test::noise;
using orvel_test::sine;
using orvel_test::Stereo;
using orvel_test::stereoNoise;

constexpr double kPi = std::numbers::pi;
constexpr int kRates[] = {8000, 44100, 48000, 96000, 384000};

/// Calls `work` with offset and length of slices of random lengths up to a millisecond.
void inSlices(int size, int sampleRate, const std::function<void(std::size_t, int)>& work) {
    std::mt19937 generator(7);
    for (int at = 0; at < size;) {
        const int wanted =
            1 + static_cast<int>(generator() % static_cast<unsigned>(sampleRate / 1000));
        const int count = std::min(wanted, size - at);
        work(static_cast<std::size_t>(at), count);
        at += count;
    }
}

// ---- sliding maximum

/// A ring that starts at zero and is searched from end to end.
std::vector<float> slidingMaximum(const std::vector<float>& input, int window) {
    std::vector<float> ring(static_cast<std::size_t>(window));
    std::vector<float> result;
    for (std::size_t i = 0; i < input.size(); ++i) {
        ring[i % ring.size()] = input[i];
        result.push_back(*std::max_element(ring.begin(), ring.end()));
    }
    return result;
}

TEST(BufferMaxEnvelope, isTheMaximumFoundBySearching) {
    std::mt19937 generator(1);
    for (const int window : {1, 2, 3, 4, 5, 7, 8, 33, 100, 441})
        for (const int longest : {1, 3, 50, 1500}) {
            CBufferMaxEnvelope envelope;
            envelope.setSampleRate(1000);
            envelope.setWindow(static_cast<float>(window));
            ASSERT_EQ(envelope.windowSamples(), window);
            auto audio = noise(5000, static_cast<std::uint32_t>(window));
            for (std::size_t i = 1000; i < 2500; ++i)
                audio[i] -= 1.5F; // all negative for longer than a window
            const auto expected = slidingMaximum(audio, window);
            std::vector<float> result = audio;
            for (std::size_t at = 0; at < audio.size();) {
                const int wanted =
                    1 + static_cast<int>(generator() % static_cast<unsigned>(longest));
                const int count = std::min(wanted, static_cast<int>(audio.size() - at));
                if (generator() % 2 == 0)
                    envelope.process(&result[at], count, &result[at]); // in place
                else
                    envelope.process(&audio[at], count, &result[at]);
                at += static_cast<std::size_t>(count);
            }
            ASSERT_EQ(result, expected) << window << " in up to " << longest;
            envelope.clear();
            ASSERT_EQ(envelope.step(-1), window == 1 ? -1 : 0) << "starts with zeros again";
        }
}

// ---- transients

/// The definition, sample by sample.
class PlainTransients {
  public:
    explicit PlainTransients(int sampleRate)
        : hold_(sampleRate * 75 / 1000) {
        const auto pole = [&](float ms) {
            return std::exp(-std::log(100.0) / (double{ms} * sampleRate / 1000));
        };
        fast_ = {pole(0.1F), pole(50), sampleRate * 3 / 1000};
        slow_ = {pole(100), pole(60), 0};
    }
    bool step(float envelope) {
        const auto fast = static_cast<float>(fast_.step(double{envelope}));
        const auto slow = static_cast<float>(slow_.step(double{envelope}));
        const float measure = fast > 0.00031622776F ? std::max(0.0F, fast - slow) / fast : 0;
        if (since_ + 1 > hold_ && measure > 0.5125F) {
            since_ = 0;
            return true;
        }
        ++since_;
        return false;
    }

  private:
    struct Follower {
        double attack, release;
        int hold;
        double value = 0, held = 0;
        int counter = 0;
        double step(double x) {
            int now = counter;
            if (x > held) {
                held = x;
                now = 0;
            }
            if (now >= hold) {
                held = value;
                counter = hold;
            } else {
                counter = now + 1;
                x = held;
            }
            return value = x + (held - x) * (x > held ? attack : release);
        }
    };
    Follower fast_{}, slow_{};
    int hold_;
    int since_ = 0;
};

std::vector<int> expectedMarks(const Stereo& audio, int sampleRate) {
    constexpr float kFloor = 0.00031622776F;
    std::vector<float> level;
    for (std::size_t i = 0; i < audio.left.size(); ++i)
        level.push_back(std::max({std::abs(audio.left[i]), std::abs(audio.right[i]), kFloor}));
    PlainTransients plain(sampleRate);
    std::vector<int> result;
    const auto envelope = slidingMaximum(level, sampleRate / 100);
    for (std::size_t i = 0; i < envelope.size(); ++i)
        if (plain.step(envelope[i])) result.push_back(static_cast<int>(i));
    return result;
}

/// Offsets of the marks; checks that the answer of each slice agrees with the marks channel.
std::vector<int> marksOf(CTransientDetector& detector, const Stereo& audio, int sampleRate) {
    std::vector<int> result;
    inSlices(audio.size(), sampleRate, [&](std::size_t at, int count) {
        std::vector<float> marks(static_cast<std::size_t>(count), 0.5F);
        const int first = detector.process(&audio.left[at], &audio.right[at], count, marks.data());
        const auto mark = std::find(marks.begin(), marks.end(), 1.0F);
        EXPECT_EQ(first, mark == marks.end() ? -1 : static_cast<int>(mark - marks.begin()));
        EXPECT_EQ(std::count(marks.begin(), marks.end(), 0.0F), count - (first >= 0 ? 1 : 0));
        if (first >= 0) result.push_back(static_cast<int>(at) + first);
    });
    return result;
}

CTransientDetector detectorAt(int sampleRate) {
    CTransientDetector detector;
    detector.setSampleRate(static_cast<float>(sampleRate));
    return detector;
}

/// Decaying bursts over a quiet bed, now left, now right: every `period` seconds from 0.25 s on.
Stereo drums(double seconds, double period, int sampleRate) {
    Stereo audio = stereoNoise(static_cast<int>(seconds * sampleRate), 3, 0.01F);
    const auto grain = noise(sampleRate, 9);
    int hit = 0;
    for (double start = 0.25; start < seconds; start += period, ++hit) {
        const auto begin = static_cast<std::size_t>(std::lround(start * sampleRate));
        auto& channel = hit % 3 == 0 ? audio.left : audio.right;
        for (std::size_t i = 0; begin + i < channel.size() && i < grain.size(); ++i)
            channel[begin + i] += static_cast<float>(
                (hit % 2 == 0 ? 0.8 : -0.3) * (0.5 + 0.5 * std::abs(double{grain[i]})) *
                std::exp(-static_cast<double>(i) / (0.03 * sampleRate)));
    }
    return audio;
}

TEST(TransientDetector, marksDrumsWhereTheDefinitionDoes) {
    for (const int rate : kRates) {
        const double seconds = rate > 100000 ? 1.5 : 5;
        const Stereo audio = drums(seconds, 0.21, rate);
        const auto expected = expectedMarks(audio, rate);
        auto detector = detectorAt(rate);
        EXPECT_EQ(marksOf(detector, audio, rate), expected) << rate;
        // Each burst is found within half a millisecond.
        for (double hit = 0.25; hit < seconds; hit += 0.21)
            EXPECT_TRUE(std::any_of(expected.begin(), expected.end(),
                                    [&](int mark) {
                                        return mark - hit * rate > -1 &&
                                               mark - hit * rate < rate * 0.0005;
                                    }))
                << hit << " of " << rate;
        detector.reset();
        const auto first = marksOf(detector, audio, rate);
        detector.reset();
        EXPECT_EQ(marksOf(detector, audio, rate), first) << "starts over";
    }
}

TEST(TransientDetector, followsSwingingLevelsAsTheDefinitionDoes) {
    // Straight pieces in decibels, many of them about as steep as a transient must be.
    const int rate = 44100;
    std::mt19937 generator(4);
    std::uniform_real_distribution<double> slope(-900, 900); // dB/s
    std::uniform_real_distribution<double> seconds(0.002, 0.03);
    Stereo audio;
    for (double level = -40; audio.size() < 60 * rate;) {
        const double step = slope(generator) / rate;
        for (double left = seconds(generator) * rate; left > 0; --left) {
            level = std::clamp(level + step, -90.0, 20.0);
            audio.left.push_back(static_cast<float>(std::pow(10, level / 20)));
        }
    }
    audio.right.resize(audio.left.size());
    const auto expected = expectedMarks(audio, rate);
    EXPECT_GT(expected.size(), 30U);
    auto detector = detectorAt(rate);
    EXPECT_EQ(marksOf(detector, audio, rate), expected);
}

TEST(TransientDetector, marksAStepAtOnceAndThenNothingForTheHold) {
    for (const int rate : kRates) {
        auto detector = detectorAt(rate);
        const int hold = rate * 75 / 1000;
        // A level that grows so fast that the slow follower never comes near.
        Stereo audio{std::vector<float>(static_cast<std::size_t>(rate * 2 / 5)), {}};
        for (std::size_t i = 0; i < audio.left.size(); ++i)
            audio.left[i] =
                static_cast<float>(0.0004 * std::exp(60 * static_cast<double>(i) / rate));
        audio.right.resize(audio.left.size());
        EXPECT_EQ(marksOf(detector, audio, rate),
                  (std::vector<int>{hold, 2 * hold + 1, 3 * hold + 2, 4 * hold + 3, 5 * hold + 4}));
        // A new detector waits for its hold, one that was reset does not.
        const std::vector<float> step(static_cast<std::size_t>(hold), 1.0F);
        auto untouched = detectorAt(rate);
        EXPECT_TRUE(marksOf(untouched, {step, step}, rate).empty());
        detector.reset();
        EXPECT_EQ(marksOf(detector, {step, step}, rate), std::vector<int>{0});
    }
}

TEST(TransientDetector, ignoresSilenceSwellsAndSteadyTones) {
    const int rate = 44100;
    const auto size = static_cast<std::size_t>(4 * rate);
    const auto tone = sine(4 * rate, 220, rate);
    auto swell = tone; // 40 dB in four seconds
    for (std::size_t i = 0; i < size; ++i)
        swell[i] *= std::pow(10.0F, 2 * static_cast<float>(i) / static_cast<float>(size) - 2);
    const std::vector<float> denormal(size, -1e-42F);
    auto detector = detectorAt(rate);
    EXPECT_TRUE(marksOf(detector, {denormal, denormal}, rate).empty());
    EXPECT_TRUE(marksOf(detector, stereoNoise(4 * rate, 8, 0.0003F), rate).empty()); // -70 dB
    const auto marks = marksOf(detector, {denormal, swell}, rate);
    EXPECT_LE(marks.size(), 1U); // its beginning at -40 dB stands out of silence
    EXPECT_TRUE(marks.empty() || marks[0] < rate / 100);
    EXPECT_TRUE(marksOf(detector, {tone, tone}, rate).empty());
}

// ---- sibilance

/// Gain of the band filter in its settled state: both low passes, and the mirror of both, whose
/// powers add to one in amplitude.
double bandGain(double hz, double lowCut, double highCut, double sampleRate, int order) {
    const auto warped = [&](double f) {
        return std::tan(kPi * std::min(f, 0.4995 * sampleRate) / sampleRate);
    };
    const double low = std::pow(warped(hz) / warped(lowCut), 2 * order);
    const double high = std::pow(warped(hz) / warped(highCut), 2 * order);
    return low / (1 + low) / (1 + high);
}

TEST(SibilanceBandFilter, hasTheGainOfItsBandOnceSettled) {
    using Slope = CSibilanceBandFilter::Slope;
    for (const Slope slope : {Slope::db12, Slope::db24, Slope::db48, Slope::db96})
        for (const int rate : {44100, 192000})
            for (const double hz : {1000.0, 3000.0, 5000.0, 6300.0, 8000.0, 12000.0}) {
                CSibilanceBandFilter filter;
                filter.setSampleRate(static_cast<float>(rate));
                filter.setSlope(slope);
                filter.setBand(5000, 8000);
                const auto in = sine(rate, hz, rate);
                const std::vector<float> nothing(in.size());
                std::vector<float> left(in.size());
                std::vector<float> right(in.size());
                inSlices(rate, rate, [&](std::size_t at, int count) {
                    filter.process(&in[at], &nothing[at], count, &left[at], &right[at]);
                });
                double sum = 0;
                for (std::size_t i = left.size() / 2; i < left.size(); ++i)
                    sum += double{left[i]} * double{left[i]};
                const double gain = std::sqrt(sum / static_cast<double>(left.size() / 2) * 2);
                const double expected =
                    bandGain(hz, 5000, 8000, rate, static_cast<int>(slope) / 12);
                // The cache keeps sections 26 Hz apart at 8 kHz: 0.35 % of the cut.
                const double tolerance = expected * 0.0035 * 2 * static_cast<int>(slope) / 12;
                EXPECT_NEAR(gain, expected, std::max(tolerance, 1e-6))
                    << static_cast<int>(slope) << " dB, " << hz << " of " << rate;
                EXPECT_LT(*std::max_element(right.begin(), right.end()), 1e-15);
            }
}

TEST(SibilanceBandFilter, glidesByShareAndRatio) {
    CSibilanceBandFilter filter;
    filter.setSampleRate(48000);
    filter.setBand(5000, 1e9);
    std::vector<float> audio(48);
    const double steps[] = {20 * 8.05, 20 * 8.05 * 8.05, 1296.05 + 0.505 * (5000 - 1296.05)};
    for (const double step : steps) {
        filter.process(audio.data(), audio.data(), 48, audio.data(), audio.data());
        EXPECT_NEAR(filter.lowCut(), step, 1e-9);
        EXPECT_EQ(filter.highCut(), 22050);
    }
    filter.setBand(0, 100);
    filter.setSlope(CSibilanceBandFilter::Slope::db48);
    filter.process(audio.data(), audio.data(), 48, audio.data(), audio.data());
    EXPECT_NEAR(filter.lowCut(), 20 / 1.0405, 1e-9);
    EXPECT_NEAR(filter.highCut(), 22050 / 1.0405, 1e-9);
}

TEST(SibilanceBandFilter, designsAnewForAnotherRateOrSlope) {
    const auto audio = noise(4800, 6);
    const auto run = [&](CSibilanceBandFilter& filter) {
        filter.setBand(5000, 8000);
        std::vector<float> left(audio.size());
        auto right = left;
        filter.process(audio.data(), audio.data(), 4800, left.data(), right.data());
        return left;
    };
    CSibilanceBandFilter used;
    for (const auto slope :
         {CSibilanceBandFilter::Slope::db12, CSibilanceBandFilter::Slope::db24}) {
        run(used);
        CSibilanceBandFilter fresh;
        for (CSibilanceBandFilter* const filter : {&used, &fresh}) {
            filter->setSampleRate(96000);
            filter->setSlope(slope);
        }
        EXPECT_EQ(run(used), run(fresh));
    }
}

SibilanceDetector detectorFor(SibilanceVoice voice, int sampleRate) {
    SibilanceDetector detector;
    detector.setSampleRate(static_cast<float>(sampleRate));
    detector.setVoice(voice);
    return detector;
}

std::vector<float> envelopeOf(SibilanceDetector& detector, const Stereo& audio, int sampleRate) {
    std::vector<float> envelope(audio.left.size(), -1);
    inSlices(audio.size(), sampleRate, [&](std::size_t at, int count) {
        detector.process(&audio.left[at], &audio.right[at], count, &envelope[at]);
    });
    return envelope;
}

TEST(SibilanceDetector, showsTheShareOfTimeTheBandIsAboveItsThreshold) {
    const auto female = SibilanceVoice::female;
    const auto male = SibilanceVoice::male;
    for (const int rate : {44100, 48000, 96000, 384000})
        for (const auto voice : {male, female})
            for (const double hz : {500.3, 2000.3, 5000.3, 6500.3, 9000.3, 13371.7})
                for (const double amplitude : {0.19, 0.5, 1.0}) {
                    const auto tone = sine(rate, hz, rate, amplitude);
                    auto detector = detectorFor(voice, rate);
                    const std::vector<float> nothing(tone.size());
                    const auto envelope = envelopeOf(
                        detector, hz < 6000 ? Stereo{tone, nothing} : Stereo{nothing, tone}, rate);
                    const double level =
                        amplitude * (voice == male ? bandGain(hz, 5000, 8000, rate, 1)
                                                   : bandGain(hz, 7000, 10000, rate, 1));
                    const double threshold = 0.12589253 / 2;
                    const double share =
                        level > threshold ? 2 / kPi * std::acos(threshold / level) : 0;
                    // Ripple of the envelope, and beats of the tone with the rate, stay below.
                    EXPECT_NEAR(double{envelope.back()}, share, 0.03)
                        << rate << " " << hz << " x " << amplitude << " voice "
                        << static_cast<int>(voice);
                }
}

TEST(SibilanceDetector, startsOverWithEachVoiceAndRestsWithoutOne) {
    const Stereo audio = stereoNoise(20000, 5, 0.8F);
    auto detector = detectorFor(SibilanceVoice::male, 44100);
    const auto first = envelopeOf(detector, audio, 44100);
    EXPECT_GT(first.back(), 0.3F);
    detector.setVoice(SibilanceVoice::off);
    float untouched = 0.25F;
    EXPECT_FALSE(detector.process(audio.left.data(), audio.right.data(), 1, &untouched));
    EXPECT_EQ(untouched, 0.25F);
    detector.setVoice(SibilanceVoice::male);
    EXPECT_EQ(envelopeOf(detector, audio, 44100), first);
}

TEST(SibilanceDetector, survivesEveryRateAndComesToRestInSilence) {
    for (const int rate : {1000, 8000, 11025, 44100, 384000})
        for (const auto voice : {SibilanceVoice::male, SibilanceVoice::female}) {
            auto detector = detectorFor(voice, rate);
            Stereo square{std::vector<float>(static_cast<std::size_t>(rate), 1e6F), {}};
            for (std::size_t i = 0; i < square.left.size(); i += 2)
                square.left[i] = -1e6F;
            square.right.assign(square.left.size(), 1e-41F);
            for (const float x : envelopeOf(detector, square, rate))
                ASSERT_TRUE(x >= 0 && x <= 1) << rate;
            // With the cuts limited to just below half of 1 kHz, the filter rings for seconds.
            const std::vector<float> nothing(
                static_cast<std::size_t>((rate < 8000 ? 9 : 3) * rate));
            const auto rest = envelopeOf(detector, {nothing, nothing}, rate);
            EXPECT_EQ(rest.back(), 0.0F) << rate;
            for (const float x : rest)
                ASSERT_TRUE(x == 0.0F || std::isnormal(x)) << rate;
        }
}

} // namespace
} // namespace Orvel
