// Transport, sync periods and the boundaries that slices end on.
#include "analysis/ScopeTiming.h"
#include "analysis/TransportClock.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace Orvel {
namespace {

AnalysisBlock playingAt(double quarters, float tempo = 120.0F) {
    AnalysisBlock block;
    block.sampleCount = 512;
    block.playing = true;
    block.tempo = tempo;
    block.position = quarters;
    return block;
}

TEST(TransportClock, countsWhilePlayingAndFollowsTheHostWhenItJumps) {
    constexpr double kRate = 48000; // 24000 samples a quarter at 120 BPM
    TransportClock clock;
    clock.advance(77);
    clock.beginChunk(playingAt(2), kRate);
    EXPECT_EQ(clock.position(), 48000) << "read when playback starts";
    clock.advance(512);
    clock.beginChunk(playingAt(2 + 500.0 / 24000), kRate);
    EXPECT_EQ(clock.position(), 48512) << "small disagreements are ignored";
    clock.beginChunk(playingAt(8), kRate);
    EXPECT_EQ(clock.position(), 8 * 24000) << "a loop or a jump is followed";
    EXPECT_TRUE(clock.beginChunk(playingAt(8, 60), kRate));
    EXPECT_EQ(clock.position(), 8 * 48000) << "a new tempo moves every beat";

    AnalysisBlock stopped = playingAt(100);
    stopped.playing = false;
    clock.beginChunk(stopped, kRate);
    clock.advance(512);
    EXPECT_EQ(clock.position(), 8 * 48000 + 512) << "it counts on while stopped";
}

TEST(TransportClock, keepsTheLastValidTempo) {
    TransportClock clock;
    EXPECT_EQ(clock.tempo(), 120.0F);
    for (const float bad : {0.0F, -5.0F, 0.5F, 1000.5F, std::numeric_limits<float>::quiet_NaN(),
                            std::numeric_limits<float>::infinity()}) {
        EXPECT_FALSE(clock.beginChunk(playingAt(0, bad), 48000));
        EXPECT_EQ(clock.tempo(), 120.0F);
    }
    clock.beginChunk(playingAt(std::numeric_limits<double>::quiet_NaN()), 48000);
    clock.beginChunk(playingAt(1e300), 48000);
    EXPECT_EQ(clock.position(), 0);
}

TEST(ScopeTiming, periodsOfTheModes) {
    ScopeTiming timing;
    EXPECT_EQ(timing.period(120).milliseconds, 5000);
    EXPECT_FALSE(timing.period(120).synchronised);

    timing.syncMode = static_cast<int>(ScopeSyncMode::beatTime);
    EXPECT_DOUBLE_EQ(timing.period(120).milliseconds, 0.25 * 2000 * 4);
    timing.beatIndex = 8;
    timing.multiplier = 1;
    EXPECT_DOUBLE_EQ(timing.period(60).milliseconds, 32000);

    timing.syncMode = static_cast<int>(ScopeSyncMode::pitch);
    timing.note = 9;
    EXPECT_DOUBLE_EQ(timing.period(120).milliseconds, 1000 / 13.75);
    timing.note = 108;
    const double high = 1000 / (13.75 * std::exp2(99.0 / 12));
    const double period = timing.period(120).milliseconds;
    EXPECT_GE(period, 1.0);
    EXPECT_LT(period, 1.0 + high);
    EXPECT_NEAR(period / high, std::round(period / high), 1e-9) << "whole periods of the note";

    timing.syncMode = static_cast<int>(ScopeSyncMode::frequency);
    timing.frequencyHz = 50;
    timing.multiplier = 3;
    EXPECT_DOUBLE_EQ(timing.period(120).milliseconds, 60);
    timing.syncMode = static_cast<int>(ScopeSyncMode::time);
    timing.timeMs = 10;
    EXPECT_DOUBLE_EQ(timing.period(120).milliseconds, 10);
    EXPECT_TRUE(timing.period(120).synchronised);
}

TEST(ScopeTiming, everyBoundaryIsMetToTheSampleForHours) {
    ScopeTiming timing;
    timing.syncMode = static_cast<int>(ScopeSyncMode::pitch);
    timing.note = 60; // C 3 times four: a period that is no whole number of samples
    constexpr double kRate = 44100;
    const double periodMs = timing.period(120).milliseconds;
    const double period = periodMs * kRate * 0.001;
    for (const double start : {0.0, 1e6, 44100.0 * 3600 * 10}) {
        auto position = static_cast<std::int64_t>(start);
        for (int i = 0; i < 2000; ++i) {
            const auto distance = timing.distanceToBoundary(periodMs, kRate, position);
            // The last whole sample at or before the boundary that lies ahead.
            const double next = (std::floor(static_cast<double>(position) / period) + 1) * period;
            ASSERT_NEAR(static_cast<double>(position + distance), std::floor(next * (1 + 1e-15)),
                        0.51);
            ASSERT_GE(distance, 0);
            position += std::max<std::int64_t>(1, distance);
        }
    }
}

TEST(ScopeTiming, aBoundaryOnAWholeSampleIsThatSample) {
    // Periods that no double holds exactly, at boundaries that fall on whole samples.
    struct Case {
        ScopeSyncMode mode;
        double tempo;
        float value;
        double rate;
        std::int64_t boundary;
    };
    constexpr Case kCases[] = {{ScopeSyncMode::beatTime, 66, 3, 44100, 26019000},
                               {ScopeSyncMode::frequency, 120, 17, 44100, 26415900},
                               {ScopeSyncMode::time, 120, 19, 44100, 26452503}};
    for (const Case& each : kCases) {
        ScopeTiming timing;
        timing.syncMode = static_cast<int>(each.mode);
        timing.multiplier = 1;
        timing.frequencyHz = each.value;
        timing.timeMs = each.value;
        const double period = timing.period(each.tempo).milliseconds;
        EXPECT_EQ(timing.distanceToBoundary(period, each.rate, each.boundary - 10), 10);
        EXPECT_EQ(timing.distanceToBoundary(period, each.rate, each.boundary - 1), 1);
    }
}

} // namespace
} // namespace Orvel
