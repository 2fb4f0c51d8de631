// The plug-in as a host drives it: audio through, chunks handed over, measures right.
#include "analysis/OrvelScope.h"
#include "Signals.h"
#include "frame/VardoCallback.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>

namespace Orvel {
namespace {

using orvel_test::PlainHost;
using orvel_test::sine;
using orvel_test::Stereo;
using orvel_test::stereoNoise;

bool sameMeasures(const Vardo::AnalysisSnapshot& a, const Vardo::AnalysisSnapshot& b) {
    for (std::size_t i = 0; i < a.levels.size(); ++i)
        if (a.levels[i].peakLast != b.levels[i].peakLast ||
            a.levels[i].peakMax != b.levels[i].peakMax || a.levels[i].overs != b.levels[i].overs ||
            a.levels[i].rms != b.levels[i].rms || a.levels[i].rmsFed != b.levels[i].rmsFed)
            return false;
    return a.slices == b.slices && a.histogram == b.histogram &&
           a.dynamicRangeDb[0] == b.dynamicRangeDb[0] && a.dynamicRangeDb[1] == b.dynamicRangeDb[1];
}

/// RMS of the last `window` samples in the fixed point of the meter.
float rmsOf(const std::vector<float>& audio, int end, int window) {
    std::uint64_t sum = 0;
    for (int i = end - window; i < end; ++i) {
        const float x = audio[static_cast<std::size_t>(i)];
        sum += static_cast<std::uint32_t>(x * 20000000.0F * x);
    }
    return static_cast<float>(std::sqrt(static_cast<double>(sum) / 2e7 / window));
}

class OrvelScopeTest : public testing::TestWithParam<bool> {
  protected:
    void SetUp() override { scope.setThreadedProcessing(GetParam()); }
    Vardo::IPluginParameter& parameter(ParameterId id) { return scope.parameter(id); }

    COrvelScope scope{nullptr};
};

TEST_P(OrvelScopeTest, measuresEverySampleOnceWhateverTheBlocks) {
    // The RMS window covers the whole signal: one sample lost, doubled or stale would show.
    constexpr int kRate = 48000;
    parameter(kGlobalRMSLength).setValue(1000);
    const Stereo audio = stereoNoise(kRate, 42);
    PlainHost host(scope, kRate, 480);

    std::mt19937 generator(9);
    for (int offset = 0; offset < kRate;) {
        const int samples = std::min<int>(static_cast<int>(generator() % 1500), kRate - offset);
        const Stereo out = host.block(audio, offset, samples);
        ASSERT_TRUE(std::equal(out.left.begin(), out.left.end(), audio.left.begin() + offset));
        ASSERT_TRUE(std::equal(out.right.begin(), out.right.end(), audio.right.begin() + offset));
        offset += samples;
    }
    const auto result = host.read();
    EXPECT_EQ(result.levels[0].rms, rmsOf(audio.left, kRate, kRate));
    EXPECT_EQ(result.levels[1].rms, rmsOf(audio.right, kRate, kRate));
    EXPECT_EQ(result.slices, 1000);
}

TEST_P(OrvelScopeTest, smallBlocksWaitUntilTheChunkIsFull) {
    PlainHost host(scope, 48000, 480);
    const Stereo audio = stereoNoise(960, 1);
    host.block(audio, 0, 479);
    EXPECT_EQ(host.read().slices, 0);
    host.block(audio, 479, 1);
    EXPECT_EQ(host.read().slices, 10);
    host.block(audio, 0, 0);
    EXPECT_EQ(host.read().slices, 10);
    host.block(audio, 480, 100);
    scope.setBlockSize(480); // the same size: the chunk starts over all the same
    host.block(audio, 0, 479);
    EXPECT_EQ(host.read().slices, 10);
}

TEST_P(OrvelScopeTest, aThreadMakesNoDifference) {
    COrvelScope other(nullptr);
    other.setThreadedProcessing(!GetParam());
    for (COrvelScope* each : {&scope, &other}) {
        each->parameter(kGlobalMeteringMode).setValue(1);
        each->setActivePage(2);
    }
    const Stereo audio = stereoNoise(100000, 7, 1.5F);
    PlainHost here(scope, 44100, 333);
    PlainHost there(other, 44100, 333);
    EXPECT_TRUE(here.play(audio, 333));
    EXPECT_TRUE(there.play(audio, 333));
    EXPECT_TRUE(sameMeasures(here.read(), there.read()));
    EXPECT_GT(here.read().levels[4].overs, 100);
    EXPECT_GT(here.read().levels[2].rms, 0.1F);
}

TEST_P(OrvelScopeTest, gainActsOnTheMeasuresOnly) {
    PlainHost host(scope, 48000, 512);
    parameter(kGlobalInputGain).setValue(0.25F);
    EXPECT_TRUE(host.play(stereoNoise(5120, 3, 4.0F), 512));
    EXPECT_LE(host.read().levels[0].peakMax, 1.0F);
    EXPECT_GT(host.read().levels[0].peakMax, 0.9F);
    EXPECT_EQ(host.read().levels[0].overs, 0);
}

TEST_P(OrvelScopeTest, leavingBypassClearsTheMeasuresButNotTheOvers) {
    PlainHost host(scope, 48000, 480);
    const Stereo loud = stereoNoise(4800, 3, 2.0F);
    host.play(loud, 480);
    scope.setBypass(true);
    EXPECT_TRUE(host.play(loud, 480)) << "bypassed audio passes, and is measured";
    const int overs = host.read().levels[0].overs;
    EXPECT_EQ(overs, 200);
    scope.setBypass(false);
    const auto result = host.read();
    EXPECT_EQ(result.levels[0].overs, overs);
    EXPECT_EQ(result.levels[0].peakMax, 0.0F);
    EXPECT_EQ(result.levels[0].rms, 0.0F);
    EXPECT_EQ(result.dynamicRangeDb[0], -96.0F);
    scope.resetOvers();
    EXPECT_EQ(host.read().levels[0].overs, 0);
}

TEST_P(OrvelScopeTest, slicesEndOnSyncBoundaries) {
    PlainHost host(scope, 48000, 4800);
    parameter(kScopeSyncMode).setValue(4);               // frequency
    parameter(kScopeSyncDurationFrequency).setValue(64); // 750 samples
    parameter(kScopeVisibleTimeMultiplier).setValue(1);
    host.play(stereoNoise(48000, 1), 4800);
    // 64 periods of 15 whole slices and one of 30 samples; a chunk's end cuts one slice in two,
    // but for every fifth chunk, where a period ends as well.
    EXPECT_EQ(host.read().slices, 64 * 16 + 8);
}

TEST_P(OrvelScopeTest, survivesRatesAndSizesNoHostShouldSet) {
    const Stereo audio = stereoNoise(3000, 1);
    for (const double rate : {0.0, -1.0, 1.0, 1e9, std::nan(""), HUGE_VAL, 44100.0}) {
        for (const int size : {0, -5, 1, 11, std::numeric_limits<int>::max(), 64}) {
            PlainHost host(scope, rate, size);
            for (int mode = 0; mode < 6; ++mode) {
                parameter(kScopeSyncMode).setValue(static_cast<float>(mode));
                EXPECT_TRUE(host.play(audio, 700));
            }
            const auto result = host.read();
            EXPECT_GE(result.sampleRate, 1000);
            EXPECT_LE(result.sampleRate, 1536000);
            EXPECT_GE(result.chunkLength, 10);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Threading, OrvelScopeTest, testing::Bool(), [](const auto& threaded) {
    return threaded.param ? "worker" : "audioThread";
});

// ---- parameters

struct RecordingHost : Vardo::VardoCallback {
    void refreshParameters() override { ++refreshes; }
    int refreshes = 0;
};

struct RecordingListener : Vardo::ParameterChangeListener {
    void parameterChanged(Vardo::IPluginParameter*) override { ++calls; }
    int calls = 0;
};

TEST(AnalyserParameters, essSwitchesExcludeEachOtherAndTheHostHears) {
    RecordingHost host;
    COrvelScope scope(&host);
    RecordingListener dial;
    scope.parameter(kScopeDeEsserFemale).addListener(&dial, false);

    scope.parameter(kScopeDeEsserFemale).setValue(1);
    EXPECT_EQ(dial.calls, 1);
    scope.parameter(kScopeDeEsserMale).setNormalizedValue(1.0, Vardo::kFromHost);
    EXPECT_FALSE(scope.parameter(kScopeDeEsserFemale).getBoolValue());
    EXPECT_TRUE(scope.parameter(kScopeDeEsserMale).getBoolValue());
    EXPECT_EQ(dial.calls, 1) << "a dial is never told on a host's thread";
    EXPECT_EQ(host.refreshes, 0);
    scope.onIdle();
    EXPECT_EQ(dial.calls, 2);
    EXPECT_EQ(host.refreshes, 1);
    scope.onIdle();
    EXPECT_EQ(dial.calls, 2);
    EXPECT_EQ(host.refreshes, 1);
}

TEST(AnalyserParameters, changedTimingEndsAFreezeButTheSameValueDoesNot) {
    COrvelScope scope(nullptr);
    scope.parameter(kScopeFreeze).setValue(1);
    scope.parameter(kScopeSyncMode).setValue(0);
    scope.parameter(kGlobalInputGain).setValue(0.5F);
    EXPECT_TRUE(scope.parameter(kScopeFreeze).getBoolValue());
    scope.parameter(kScopeVisibleTimeMs).setValue(100);
    EXPECT_FALSE(scope.parameter(kScopeFreeze).getBoolValue());
}

TEST(AnalyserParameters, everyTextCanBeTypedBack) {
    COrvelScope scope(nullptr);
    scope.setSampleRate(48000);
    for (int id = 0; id < kNumParameters; ++id) {
        Vardo::IPluginParameter& parameter = scope.parameter(static_cast<ParameterId>(id));
        for (int step = 0; step <= 40; ++step) {
            parameter.setNormalizedValue(static_cast<float>(step) / 40);
            Core::CStringBufferd<128> shown;
            parameter.getDisplayText(double{parameter.getNormalizedValue()}, shown);
            const float before = parameter.getValue();
            parameter.setValueFromText(shown.c_str());
            Core::CStringBufferd<128> again;
            parameter.getDisplayText(double{parameter.getNormalizedValue()}, again);
            EXPECT_STREQ(shown.c_str(), again.c_str())
                << parameter.getKeyText() << " at " << before;
        }
    }
}

TEST(AnalyserParameters, textsAreThoseOfTheField) {
    COrvelScope scope(nullptr);
    scope.setSampleRate(48000);
    const auto textAt = [&](ParameterId id, float plain) {
        char text[128] = "";
        scope.parameter(id).formatValue(plain, text, Vardo::kWithUnit);
        return std::string(text);
    };
    EXPECT_EQ(textAt(kGlobalInputGain, 0), "-oodB");
    EXPECT_EQ(textAt(kGlobalInputGain, 1), "+0.00dB");
    EXPECT_EQ(textAt(kScopeSyncDurationBeatTime, 8), "8 Bars");
    EXPECT_EQ(textAt(kScopeSyncDurationPitch, 69), "A 3");
    EXPECT_EQ(textAt(kScopeVisibleTimeMs, 250), "250 ms");
    EXPECT_EQ(textAt(kScopeVisibleTimeMs, 5000), "5.00 s");
    EXPECT_EQ(textAt(kSpectrumPeakReset, 0), "Hold");
    EXPECT_EQ(textAt(kSpectrumProjectorFrequency, 1), "24000.0Hz");
    for (const char* text : {"1,5 s", "1.5S", "1.5 Sec", "1500ms", "1500"}) {
        scope.parameter(kScopeVisibleTimeMs).resetToDefault();
        scope.parameter(kScopeVisibleTimeMs).setValueFromText(text);
        EXPECT_EQ(scope.parameter(kScopeVisibleTimeMs).getValue(), 1500.0F) << text;
    }
    for (const char* text : {"1500", "1500 hz", "1,5k", "1.5 KHZ"}) {
        scope.parameter(kSpectrumProjectorFrequency).resetToDefault();
        scope.parameter(kSpectrumProjectorFrequency).setValueFromText(text);
        EXPECT_NEAR(scope.projectorFrequency(), 1500, 0.01) << text;
    }
}

// ---- state

std::vector<std::byte> chunkOf(COrvelScope& scope) {
    void* data = nullptr;
    const int size = scope.getChunk(&data);
    const auto* const bytes = static_cast<const std::byte*>(data);
    return {bytes, bytes + size};
}

void load(COrvelScope& scope, const std::vector<std::byte>& chunk) {
    scope.setChunk(chunk.data(), static_cast<int>(chunk.size()));
}

TEST(AnalyserState, comesBackExactly) {
    std::mt19937 generator(12);
    for (int round = 0; round < 50; ++round) {
        COrvelScope saved(nullptr);
        saved.setSampleRate(round % 2 == 0 ? 44100 : 96000);
        for (int id = 0; id < kNumParameters; ++id)
            saved.parameter(static_cast<ParameterId>(id))
                .setNormalizedValue(static_cast<float>(generator() % 1001) / 1000.0F);
        saved.parameter(kScopeFreeze).setValue(1);
        saved.setActivePage(round % 4);
        const auto chunk = chunkOf(saved);

        COrvelScope loaded(nullptr);
        loaded.setSampleRate(round % 2 == 0 ? 44100 : 96000);
        loaded.parameter(kScopeFreeze).setValue(1);
        load(loaded, chunk);
        EXPECT_EQ(chunkOf(loaded), chunk);
        EXPECT_TRUE(loaded.parameter(kScopeFreeze).getBoolValue());
        EXPECT_EQ(loaded.activePage(), round % 4);

        void* own = nullptr;
        const int size = loaded.getChunk(&own);
        loaded.setChunk(own, size); // hosts hand back the very memory they got
        EXPECT_EQ(chunkOf(loaded), chunk);
    }
}

TEST(AnalyserState, forgetsTheOversWithoutAnEditorToo) {
    COrvelScope scope(nullptr);
    scope.setThreadedProcessing(false);
    PlainHost host(scope, 48000, 480);
    host.play(stereoNoise(4800, 3, 2.0F), 480);
    EXPECT_GT(host.read().levels[0].overs, 0);
    load(scope, chunkOf(scope));
    EXPECT_EQ(host.read().levels[0].overs, 0);
}

TEST(AnalyserState, projectorStaysAtItsFrequencyWhenTheRateChanges) {
    COrvelScope saved(nullptr);
    saved.setSampleRate(96000);
    saved.parameter(kSpectrumProjectorFrequency).setValueFromText("1000");
    const auto at1000 = chunkOf(saved);
    saved.parameter(kSpectrumProjectorFrequency).setValueFromText("30000");
    const auto at30000 = chunkOf(saved);

    COrvelScope loaded(nullptr);
    loaded.setSampleRate(44100);
    load(loaded, at1000);
    EXPECT_NEAR(loaded.projectorFrequency(), 1000, 0.1);
    loaded.setSampleRate(192000);
    EXPECT_NEAR(loaded.projectorFrequency(), 1000, 0.5) << "as when a host sets the rate last";
    loaded.setSampleRate(44100);
    load(loaded, at30000);
    EXPECT_NEAR(loaded.projectorFrequency(), 20, 1e-3) << "beyond half the rate it has no place";
}

TEST(AnalyserState, damagedChunksLeaveDefaultsAndNeverHalfAState) {
    COrvelScope saved(nullptr);
    saved.parameter(kGlobalRMSLength).setValue(100);
    saved.parameter(kSpectrumRotate).setValue(0.25F);
    saved.setActivePage(3);
    const auto whole = chunkOf(saved);
    const auto defaults = [] {
        COrvelScope fresh(nullptr);
        return chunkOf(fresh);
    }();

    COrvelScope scope(nullptr);
    for (std::size_t length = 0; length < whole.size(); ++length) {
        load(scope, {whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length)});
        // All parameters or none; the page only if it is there.
        const bool loaded = scope.parameter(kGlobalRMSLength).getValue() == 100.0F;
        EXPECT_EQ(loaded, scope.parameter(kSpectrumRotate).getValue() == 0.25F);
        scope.setActivePage(0);
    }
    load(scope, {});
    EXPECT_EQ(chunkOf(scope), defaults);

    std::mt19937 generator(1);
    for (int round = 0; round < 3000; ++round) {
        auto damaged = whole;
        for (unsigned i = 0; i < 1 + generator() % 4; ++i)
            damaged[generator() % damaged.size()] = static_cast<std::byte>(generator());
        load(scope, damaged);
        EXPECT_GE(scope.activePage(), 0);
        EXPECT_LE(scope.activePage(), 3);
        for (int id = 0; id < kNumParameters; ++id) {
            Vardo::IPluginParameter& parameter = scope.parameter(static_cast<ParameterId>(id));
            EXPECT_GE(parameter.getValue(), parameter.getMin());
            EXPECT_LE(parameter.getValue(), parameter.getMax());
        }
    }
}

} // namespace
} // namespace Orvel
