// RMS, histogram, ballistics and dynamic range against slow, plain versions of themselves.
#include "Signals.h"
#include "analysis/FloatingHistogram.h"
#include "analysis/FloatingRMS.h"
#include "analysis/LevelMeterModel.h"
#include "analysis/LevelMetering.h"
#include "analysis/PeakFollower.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <numeric>

namespace Orvel {
namespace {

using orvel_test::noise;
using orvel_test::sine;

CFloatingRMS makeRms(float sampleRate, float lengthMs) {
    CFloatingRMS rms;
    rms.setMaximumLength(1000);
    rms.setSampleRate(sampleRate);
    rms.setLength(lengthMs);
    return rms;
}

void feedInPieces(CFloatingRMS& rms, const std::vector<float>& audio) {
    std::mt19937 generator(3);
    for (std::size_t offset = 0; offset < audio.size();) {
        const std::size_t count =
            std::min<std::size_t>(1 + generator() % 97, audio.size() - offset);
        rms.feed(audio.data() + offset, static_cast<int>(count));
        offset += count;
    }
}

TEST(FloatingRMS, isTheRootOfTheMeanSquareOfItsWindow) {
    for (const float lengthMs : {10.0F, 333.0F, 1000.0F}) {
        auto rms = makeRms(44100, lengthMs);
        const auto audio = noise(100000, 11, 0.8F);
        feedInPieces(rms, audio);

        std::uint64_t sum = 0;
        for (int i = 0; i < rms.window(); ++i) {
            const float x = audio[audio.size() - 1 - static_cast<std::size_t>(i)];
            sum += static_cast<std::uint32_t>(x * 20000000.0F * x);
        }
        EXPECT_EQ(rms.window(), static_cast<int>(lengthMs * 44.1F));
        EXPECT_FLOAT_EQ(rms.value(), static_cast<float>(
                                         std::sqrt(static_cast<double>(sum) / 2e7 / rms.window())));
    }
}

TEST(FloatingRMS, returnsToExactlyZeroInSilence) {
    auto rms = makeRms(48000, 500);
    feedInPieces(rms, noise(200000, 4, 10.0F));
    EXPECT_GT(rms.value(), 5.0F);
    feedInPieces(rms, std::vector<float>(static_cast<std::size_t>(rms.window()) - 1));
    EXPECT_GT(rms.value(), 0.0F);
    feedInPieces(rms, {0.0F});
    EXPECT_EQ(rms.value(), 0.0F);
}

TEST(FloatingRMS, readsSineThreeDecibelsLowOrAsItsPeak) {
    auto rms = makeRms(48000, 1000);
    const auto tone = sine(48000, 1000, 48000);
    rms.feed(tone.data(), 48000);
    EXPECT_NEAR(20 * std::log10(rms.value()), -3.0103, 0.001);
    rms.setDoubledPower(true);
    rms.feed(tone.data(), 48000);
    EXPECT_NEAR(20 * std::log10(rms.value()), 0.0, 0.001);
    rms.setLength(200);
    EXPECT_EQ(rms.value(), 0.0F) << "a new length starts over";
    EXPECT_EQ(makeRms(1000, 0.001F).window(), 1) << "never empty";
    EXPECT_EQ(makeRms(44100, 5000).window(), 44100) << "limited to the ring";
}

TEST(HistogramScale, agreesWithTheLogarithmForEveryFinitePositiveFloat) {
    const HistogramScale& scale = HistogramScale::instance();
    // From below the lowest edge to above the highest, every float.
    const auto first = std::bit_cast<std::uint32_t>(1e-5F);
    const auto last = std::bit_cast<std::uint32_t>(4.5F);
    long long wrong = 0;
    for (std::uint32_t bits = first; bits <= last; ++bits) {
        const auto x = std::bit_cast<float>(bits);
        const float db = 20.0F * std::log10(x);
        const int expected = db >= -96.0F ? std::min(static_cast<int>(db + 96.0F), 108) : -1;
        wrong += scale.bin(x) != expected;
    }
    EXPECT_EQ(wrong, 0);
    for (const float x : {0.0F, -0.0F, 1e-40F, 9e-6F})
        EXPECT_EQ(scale.bin(x), -1) << x;
    EXPECT_EQ(scale.bin(-1.0F), scale.bin(1.0F));
    EXPECT_EQ(scale.bin(1e6F), 108);
    EXPECT_EQ(scale.bin(std::nanf("")), -1);
    EXPECT_EQ(scale.bin(HUGE_VALF), -1);
}

TEST(FloatingHistogram, countsTheLastSecond) {
    CFloatingHistogram histogram;
    histogram.setSampleRate(8000);
    histogram.setLength(1000);
    auto audio = noise(20000, 8, 1.0F);
    for (std::size_t i = 0; i < audio.size(); i += 7)
        audio[i] *= 1e-3F;
    for (std::size_t i = 0; i < audio.size(); i += 31)
        audio[i] = 0;
    for (std::size_t i = 0; i < audio.size(); i += 101)
        audio[i] = 9; // above +12 dB
    for (std::size_t i = 0; i < audio.size(); i += 50)
        histogram.feed(audio.data() + i, 50);

    Vardo::HistogramCounts expected{};
    for (std::size_t i = audio.size() - 8000; i < audio.size(); ++i) {
        const double db = 20 * std::log10(std::abs(double{audio[i]}));
        if (db >= -96) ++expected[static_cast<std::size_t>(std::min(db + 96, 108.0))];
    }
    EXPECT_EQ(histogram.counts(), expected);
    EXPECT_GT(histogram.count(108), 0);
    EXPECT_EQ(histogram.highestCount(), *std::max_element(expected.begin(), expected.end() - 1));

    histogram.clear();
    EXPECT_EQ(histogram.counts(), Vardo::HistogramCounts{});
}

TEST(PeakFollower, advancesInClosedFormAsItStepsSampleBySample) {
    constexpr float kTimes[][3] = {{0, 300, 0},  {0, 5000, 2000}, {1500, 1500, 0},
                                   {100, 60, 3}, {0.1F, 50, 3},   {20, 0, 1}};
    std::mt19937 generator(21);
    std::uniform_real_distribution<double> level(0, 1);
    for (const auto& times : kTimes) {
        for (const float rate : {8000.0F, 44100.0F, 192000.0F}) {
            PeakFollower stepped;
            PeakFollower advanced;
            for (PeakFollower* follower : {&stepped, &advanced}) {
                follower->setSampleRate(rate);
                follower->setTimes(times[0], times[1], times[2]);
            }
            double input = 0;
            for (int slice = 0; slice < 3000; ++slice) {
                // Mostly nothing new, now and then a jump, silence, just above what it shows, a
                // small move.
                const unsigned move = generator() % 8;
                if (move == 0) input = level(generator);
                if (move == 1) input = 0;
                if (move == 2) input = stepped.value() * 1.01;
                if (move == 3) input *= 1.0001;
                const int samples = static_cast<int>(generator() % 60);
                for (int i = 0; i < samples; ++i)
                    stepped.step(input);
                advanced.advance(input, samples);
                ASSERT_NEAR(advanced.value(), stepped.value(), 1e-12)
                    << "attack " << times[0] << " release " << times[1] << " hold " << times[2]
                    << " at " << rate << ", slice " << slice;
            }
        }
    }
}

TEST(PeakFollower, coversNinetyNinePercentInItsTimeAndHoldsForItsHold) {
    PeakFollower follower;
    follower.setSampleRate(48000);
    follower.setTimes(0, 300, 100);
    follower.step(1.0);
    EXPECT_EQ(follower.value(), 1.0);
    follower.advance(0.0, 4799);
    EXPECT_EQ(follower.value(), 1.0);
    follower.advance(0.0, 14400);
    EXPECT_NEAR(follower.value(), 0.01, 1e-5);
}

TEST(LevelMeterModel, dynamicRangeIsTheCrestOfTheMaterial) {
    LevelMeterModel sineMeter;
    sineMeter.setSampleRate(48000);
    EXPECT_EQ(sineMeter.dynamicRangeDb(), -96.0F);
    for (int ms = 0; ms < 20000; ++ms)
        sineMeter.update(1.0F, 0.70710678F, 48);
    EXPECT_NEAR(sineMeter.dynamicRangeDb(), 3.01, 0.01);
    EXPECT_NEAR(sineMeter.bar(), 1.0F, 1e-6);
    sineMeter.update(0.0F, 0.0F, 0);
    EXPECT_EQ(sineMeter.dynamicRangeDb(), -96.0F);
}

/// One slice through the metering, with the channels formed plainly.
class Meters {
  public:
    explicit Meters(float sampleRate) { metering.setSampleRate(sampleRate); }
    void feed(const std::vector<float>& left,
              const std::vector<float>& right,
              MeteringMode mode = MeteringMode::peak,
              bool withMidAndSide = false) {
        std::vector<float> channels[5] = {left, right, left, left, left};
        Slice slice;
        slice.count = static_cast<int>(left.size());
        for (std::size_t i = 0; i < left.size(); ++i) {
            channels[2][i] = (left[i] + right[i]) * 0.5F;
            channels[3][i] = (left[i] - right[i]) * 0.5F;
            channels[4][i] = std::abs(left[i]) > std::abs(right[i]) ? left[i] : right[i];
        }
        for (int c = 0; c < 5; ++c) {
            slice.channels[c] = channels[c].data();
            for (const float x : channels[c])
                slice.peaks[c] = std::max(slice.peaks[c], std::abs(x));
        }
        metering.measure(slice, mode, withMidAndSide);
    }
    Vardo::AnalysisSnapshot read() const {
        Vardo::AnalysisSnapshot snapshot;
        metering.read(snapshot);
        return snapshot;
    }
    LevelMetering metering;
};

TEST(LevelMetering, oversAreSlicesBeyondFullScaleAndOutliveAReset) {
    Meters meters(48000);
    meters.feed({1.0F, -1.0F}, {0, 0});
    EXPECT_EQ(meters.read().levels[0].overs, 0);
    meters.feed({1.0000001F, -1.5F}, {0, -1.0000001F});
    meters.feed({-1.2F}, {0});
    EXPECT_EQ(meters.read().levels[0].overs, 2);
    EXPECT_EQ(meters.read().levels[1].overs, 1);
    EXPECT_EQ(meters.read().levels[4].overs, 2);
    EXPECT_EQ(meters.read().levels[0].peakMax, 1.5F);
    EXPECT_EQ(meters.read().levels[0].peakLast, 1.2F);

    meters.metering.reset();
    EXPECT_EQ(meters.read().levels[0].overs, 2);
    EXPECT_EQ(meters.read().levels[0].peakMax, 0.0F);
    EXPECT_EQ(meters.read().levels[0].rms, 0.0F);
    meters.metering.requestOversReset();
    meters.feed({0}, {0});
    EXPECT_EQ(meters.read().levels[0].overs, 0);
}

TEST(LevelMetering, midAndSideAreFedOnlyWhenAskedFor) {
    Meters meters(48000);
    const auto tone = sine(480, 1000, 48000, 0.5);
    meters.feed(tone, tone);
    EXPECT_TRUE(meters.read().levels[1].rmsFed);
    EXPECT_FALSE(meters.read().levels[2].rmsFed);
    EXPECT_EQ(meters.read().levels[2].rms, 0.0F);
    meters.feed(tone, tone, MeteringMode::peak, true);
    EXPECT_TRUE(meters.read().levels[2].rmsFed);
    EXPECT_GT(meters.read().levels[2].rms, 0.0F);
    EXPECT_EQ(meters.read().levels[3].rms, 0.0F) << "mono has no side";
    EXPECT_FALSE(meters.read().levels[4].rmsFed);
}

TEST(LevelMetering, histogramStartsEmptyWhenSwitchedOnAgain) {
    Meters meters(48000);
    meters.feed({0.5F}, {0.25F}, MeteringMode::histogram);
    const auto total = [&](std::size_t channel) {
        const auto counts = meters.read().histogram[channel];
        return std::accumulate(counts.begin(), counts.end(), 0);
    };
    EXPECT_EQ(total(0), 1);
    EXPECT_EQ(total(4), 1);
    meters.feed({0.5F}, {0.25F}, MeteringMode::k14);
    EXPECT_FALSE(meters.read().histogramEnabled);
    meters.feed({0.5F, 0.5F}, {0, 0}, MeteringMode::histogram);
    EXPECT_EQ(total(0), 2);
    EXPECT_EQ(total(1), 0) << "digital silence is in no bin";
}

} // namespace
} // namespace Orvel
