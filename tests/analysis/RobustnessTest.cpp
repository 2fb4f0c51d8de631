// Audio that no meter should be fed: nothing crashes or hangs, and once clean audio has filled
// every window, every measure is that of a plug-in which never saw anything else.
#include "Signals.h"
#include "analysis/OrvelScope.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace Orvel {
namespace {

using orvel_test::PlainHost;
using orvel_test::Stereo;

std::vector<float> awfulSignal(int kind, int samples) {
    std::vector<float> signal(static_cast<std::size_t>(samples));
    for (std::size_t i = 0; i < signal.size(); ++i) {
        constexpr float kWild[] = {
            std::numeric_limits<float>::quiet_NaN(), HUGE_VALF, -HUGE_VALF, 3e38F, 0.0F, 1.0F};
        const float values[] = {
            kWild[i * 7 % std::size(kWild)],
            i % 2 == 0 ? 1e-40F : -3e-42F,  // denormal
            i / 37 % 2 == 0 ? 1.0F : -1.0F, // full-scale square
            i % 1000 == 500 ? 1.0F : 0.0F,  // single samples
            i % 2 == 0 ? 3e38F : -3e38F,    // Nyquist, absurdly loud
        };
        signal[i] = values[kind];
    }
    return signal;
}

void expectSame(float a, float b, const char* what) {
    EXPECT_EQ(a, b) << what;
    EXPECT_TRUE(std::isfinite(a)) << what;
}

class Robustness : public testing::TestWithParam<int> {};

TEST_P(Robustness, everyMeasureRecoversFromAwfulAudio) {
    for (const double rate : {8000.0, 44100.0, 384000.0}) {
        for (const int page : {0, 1, 2}) {
            COrvelScope poisoned(nullptr);
            COrvelScope fresh(nullptr);
            // All windows, and the slow followers of the meters, are over by then.
            const int cleanSamples = static_cast<int>(rate * 1.5);
            const Stereo clean = orvel_test::stereoNoise(cleanSamples, 5, 0.5F);
            const auto awful = awfulSignal(GetParam(), static_cast<int>(rate * 0.3));
            Vardo::SpectrumSnapshot spectra[2];
            Vardo::AnalysisSnapshot levels[2];
            Vardo::ScopeTable tables[2];
            int which = 0;
            for (COrvelScope* scope : {&poisoned, &fresh}) {
                scope->setThreadedProcessing(false);
                scope->setActivePage(page);
                scope->parameter(kGlobalMeteringMode).setValue(1);
                scope->parameter(kScopeDeEsserMale).setValue(1);
                scope->parameter(kScopeVisibleTimeMs).setValue(100);
                PlainHost host(*scope, rate, 512);
                if (scope == &poisoned)
                    EXPECT_TRUE(host.play({awful, awful}, 512) || GetParam() == 0);
                else
                    host.play({std::vector<float>(awful.size()), std::vector<float>(awful.size())},
                              512);
                host.play(clean, 512);
                scope->readAnalysis(levels[which]);
                scope->readSpectrum(spectra[which]);
                scope->readScope(tables[which]);
                ++which;
            }
            SCOPED_TRACE("rate " + std::to_string(rate) + " page " + std::to_string(page));
            for (std::size_t c = 0; c < 5; ++c) {
                expectSame(levels[0].levels[c].peakLast, levels[1].levels[c].peakLast, "peak");
                expectSame(levels[0].levels[c].rms, levels[1].levels[c].rms, "rms");
                EXPECT_EQ(levels[0].histogram[c], levels[1].histogram[c]);
                EXPECT_TRUE(std::isfinite(levels[0].levels[c].peakMax));
            }
            EXPECT_TRUE(std::isfinite(levels[0].dynamicRangeDb[0]));
            EXPECT_EQ(spectra[0].frames, spectra[1].frames);
            EXPECT_EQ(spectra[0].midDb, spectra[1].midDb);
            EXPECT_EQ(spectra[0].sideDb, spectra[1].sideDb);
            EXPECT_LE(std::abs(levels[0].correlation), 1.0F);
            // 0.7 % of the way per slice: what it showed before is gone to a thousandth.
            EXPECT_NEAR(levels[0].correlation, levels[1].correlation, 1e-3);
            for (const std::size_t layer : {kScopeBothLanes, kScopeFirstLane, kScopeOvers})
                for (std::size_t i = 0; i < tables[0][layer].size(); ++i) {
                    expectSame(tables[0][layer][i].lowest, tables[1][layer][i].lowest, "column");
                    expectSame(tables[0][layer][i].highest, tables[1][layer][i].highest, "column");
                }
            for (const Vardo::ScopeRange& column : tables[0][kScopeSibilance]) {
                EXPECT_GE(column.lowest, 0.0F);
                EXPECT_LE(column.highest, 1.0F);
            }
        }
    }
}

std::string nameOf(const testing::TestParamInfo<int>& kind) {
    constexpr const char* kNames[] = {"notNumbers", "denormals", "square", "impulses", "absurd"};
    return kNames[kind.param];
}

INSTANTIATE_TEST_SUITE_P(Signals, Robustness, testing::Range(0, 5), nameOf);

} // namespace
} // namespace Orvel
