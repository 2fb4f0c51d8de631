// The scope's table: columns of lowest and highest samples, scrolling or standing at sync points.
#include "Signals.h"
#include "analysis/CorrelationBlock.h"
#include "analysis/GoniometerStream.h"
#include "analysis/ScopeDataProviderSync.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <memory>
#include <numeric>
#include <thread>

namespace Orvel {
namespace {

using Sorel::ScopeColumn;
using Sorel::ScopeLayerInput;

std::vector<ScopeColumn> read(Sorel::IScopeDataProvider& provider, int layer, int columns) {
    std::vector<ScopeColumn> result(static_cast<std::size_t>(columns));
    EXPECT_TRUE(provider.TryLock());
    EXPECT_EQ(provider.GetLayerData(layer, result.data(), columns), 1);
    provider.Unlock();
    return result;
}

/// Feeds a signal as both channels of layer 0 and alone as layer 1, in slices.
template <typename Provider>
void feed(Provider& provider, const std::vector<float>& audio, int slice = 44) {
    for (std::size_t at = 0; at < audio.size(); at += static_cast<std::size_t>(slice)) {
        const int count = std::min(slice, static_cast<int>(audio.size() - at));
        const ScopeLayerInput both{2, 4, &audio[at], &audio[at]};
        const ScopeLayerInput one{1, 0, &audio[at], nullptr};
        const ScopeLayerInput* const inputs[] = {&both, &one};
        provider.Process(inputs, count);
    }
}

std::vector<float> ramp(int samples) {
    std::vector<float> values(static_cast<std::size_t>(samples));
    for (std::size_t i = 0; i < values.size(); ++i)
        values[i] = static_cast<float>(i);
    return values;
}

TEST(ScopeProvider, freeRunningRingScrolls) {
    Sorel::CMultiLayerScopeDataProvider provider;
    provider.SetNumLayers(2);
    provider.SetSampleRate(1000);
    provider.SetVisibleTime(100);
    provider.SetNumColumns(10); // 10 samples a column
    feed(provider, ramp(125), 7);
    const auto columns = read(provider, 0, 20);
    for (std::size_t i = 0; i < 10; ++i) {
        EXPECT_EQ(columns[i].min, static_cast<float>(20 + i * 10)) << i;
        EXPECT_EQ(columns[i].max, static_cast<float>(29 + i * 10)) << i;
    }
    EXPECT_EQ(columns[10].max, 0.0F) << "nothing beyond the width";
    provider.ClearLayer(0);
    EXPECT_EQ(read(provider, 0, 1)[0].max, 0.0F);
    EXPECT_EQ(read(provider, 1, 1)[0].min, 20.0F);
}

TEST(ScopeProvider, oneColumnAndAnyWidthWork) {
    CScopeDataProvider_Sync provider;
    provider.SetNumLayers(2);
    for (const int width : {1, 0, -7, 3, 2000}) {
        provider.SetNumColumns(width);
        EXPECT_EQ(provider.numColumns(), std::max(1, width));
        feed(provider, ramp(5000));
        EXPECT_EQ(read(provider, 1, 1).size(), 1U);
    }
    provider.SetNumLayers(50);
    EXPECT_EQ(provider.GetNumLayers(), 10);
}

TEST(ScopeProvider, channelsAreChosenAsAsked) {
    Sorel::CMultiLayerScopeDataProvider provider;
    provider.SetNumLayers(4);
    provider.SetSampleRate(1000);
    provider.SetVisibleTime(10);
    provider.SetNumColumns(1);
    const std::vector<float> left(10, 0.25F);
    const std::vector<float> right(10, -0.5F);
    const ScopeLayerInput inputs[] = {{2, 1, left.data(), right.data()},
                                      {2, 2, left.data(), right.data()},
                                      {2, 0, left.data(), right.data()},
                                      {3, 0, left.data(), right.data()}};
    const ScopeLayerInput* const pointers[] = {&inputs[0], &inputs[1], &inputs[2], &inputs[3]};
    provider.Process(pointers, 10);
    EXPECT_EQ(read(provider, 0, 1)[0].min, 0.25F);
    EXPECT_EQ(read(provider, 1, 1)[0].max, -0.5F);
    EXPECT_EQ(read(provider, 2, 1)[0].min, -0.5F);
    EXPECT_EQ(read(provider, 2, 1)[0].max, 0.25F);
    EXPECT_EQ(read(provider, 3, 1)[0].max, 0.0F);
}

class SyncedProvider : public testing::Test {
  protected:
    void SetUp() override {
        provider.SetNumLayers(2);
        provider.SetSampleRate(1000);
        provider.SetVisibleTime(100);
        provider.SetNumColumns(10); // 10 samples a column
        provider.setSyncEnabled(true);
    }
    /// `toSync` from the slice's first sample.
    void slice(const std::vector<float>& audio, std::int64_t toSync) {
        provider.setSamplesToSync(toSync);
        feed(provider, audio, static_cast<int>(audio.size()));
    }
    CScopeDataProvider_Sync provider;
};

TEST_F(SyncedProvider, columnZeroBeginsWithTheSampleAtTheSyncPoint) {
    slice(ramp(40), 13);
    slice(std::vector<float>(100, -1.0F), -1);
    const auto columns = read(provider, 1, 10);
    EXPECT_EQ(columns[0].min, 13.0F);
    EXPECT_EQ(columns[0].max, 22.0F);
    EXPECT_EQ(columns[1].min, 23.0F);
    EXPECT_EQ(columns[2].max, 39.0F);
    EXPECT_EQ(columns[9].min, -1.0F);

    slice(std::vector<float>(500, 7.0F), -1);
    EXPECT_EQ(read(provider, 1, 10)[0].min, 13.0F) << "a full picture stands";
    slice(std::vector<float>(30, 9.0F), 0);
    EXPECT_EQ(read(provider, 1, 10)[0].min, 9.0F) << "a point at once comes before any sample";
    EXPECT_EQ(read(provider, 1, 10)[3].min, -1.0F) << "the rest of the old picture stays";
}

TEST_F(SyncedProvider, everyNthPointOnly) {
    provider.setSyncEvery(2);
    slice(std::vector<float>(50, 1.0F), 0);
    slice(std::vector<float>(20, 2.0F), 0);
    EXPECT_EQ(read(provider, 1, 1)[0].max, 2.0F);
    slice(std::vector<float>(20, 3.0F), 0);
    EXPECT_EQ(read(provider, 1, 1)[0].max, 2.0F);
    slice(std::vector<float>(20, 4.0F), 0);
    EXPECT_EQ(read(provider, 1, 1)[0].max, 4.0F);
}

TEST_F(SyncedProvider, aShiftedPictureIsClearedOnceAtTheNextPoint) {
    slice(ramp(100), 0);
    provider.setViewOffset(3);
    EXPECT_EQ(read(provider, 1, 10)[0].min, 30.0F);
    EXPECT_EQ(read(provider, 1, 10)[9].min, 20.0F);
    provider.setViewOffset(-2);
    EXPECT_EQ(read(provider, 1, 10)[0].min, 80.0F) << "to the other side as well";
    provider.setViewOffset(13);
    EXPECT_EQ(read(provider, 1, 10)[0].min, 30.0F);
    slice(std::vector<float>(20, 5.0F), 0);
    EXPECT_EQ(provider.viewOffset(), 0.0F);
    EXPECT_EQ(read(provider, 1, 10)[1].max, 5.0F);
    EXPECT_EQ(read(provider, 1, 10)[5].max, 0.0F);
    provider.setViewOffset(4);
    provider.setSyncEnabled(false);
    EXPECT_EQ(read(provider, 1, 10)[1].max, 0.0F) << "starts over empty";
    EXPECT_EQ(provider.viewOffset(), 0.0F) << "no point comes that would take it back";
}

TEST_F(SyncedProvider, manyColumnsPerSampleRepeatTheSample) {
    provider.SetSampleRate(44100);
    provider.SetVisibleTime(1);
    provider.SetNumColumns(720); // about 16 columns a sample
    EXPECT_NEAR(provider.samplesPerColumn(), 0.06125, 1e-6);
    slice(ramp(44), 0);
    const auto columns = read(provider, 1, 720);
    for (std::size_t i = 0; i < 718; ++i) { // as many as the slice's 44 samples fill
        EXPECT_NEAR(columns[i].min, std::floor(static_cast<float>(i) * 0.06125F), 1.0F) << i;
        EXPECT_EQ(columns[i].min, columns[i].max);
    }
    EXPECT_EQ(columns[8].max, 0.0F);
    EXPECT_EQ(columns[25].max, 1.0F);
}

TEST(ScopeThreads, readingResizingAndClearingWhileSamplesComeIn) {
    CScopeDataProvider_Sync provider;
    provider.SetNumLayers(2);
    std::atomic<bool> stop{false};
    std::thread analysis([&] {
        const auto audio = orvel_test::noise(480, 1);
        while (!stop) {
            provider.setSamplesToSync(100);
            provider.setSyncEnabled(!provider.isSyncEnabled());
            provider.SetVisibleTime(10);
            feed(provider, audio, 48);
        }
    });
    for (int i = 0; i < 500; ++i) {
        const auto columns = read(provider, i % 2, 300);
        for (const ScopeColumn& column : columns)
            EXPECT_LE(column.min, column.max);
        if (i % 10 == 0) provider.SetNumColumns(1 + i);
        if (i % 7 == 0) provider.ClearLayer(i % 2);
        provider.setViewOffset(static_cast<float>(i % 5));
    }
    stop = true;
    analysis.join();
}

// ---- correlation

TEST(Correlation, ofEqualOppositeUnrelatedAndSilentChannels) {
    constexpr int kTenWindows = 20480;
    const auto noise = orvel_test::noise(kTenWindows, 1, 0.5F);
    const auto other = orvel_test::noise(kTenWindows, 2, 0.5F);
    auto opposite = noise;
    for (float& x : opposite)
        x = -0.3F * x;
    const std::vector<float> silence(kTenWindows);
    const std::vector<float> constant(kTenWindows, 0.3F);
    const auto hiss = orvel_test::noise(kTenWindows, 3, 0.00009F);

    CorrelationBlock block;
    EXPECT_EQ(block.window(), 2048);
    EXPECT_EQ(block.Compute(noise.data(), noise.data(), kTenWindows), 1.0F);
    EXPECT_EQ(block.Compute(noise.data(), opposite.data(), kTenWindows), -1.0F);
    EXPECT_NEAR(block.Compute(noise.data(), other.data(), kTenWindows), 0.0F, 0.03);
    EXPECT_EQ(block.Compute(noise.data(), silence.data(), kTenWindows), 0.0F);
    EXPECT_EQ(block.Compute(constant.data(), constant.data(), kTenWindows), 0.0F);
    EXPECT_EQ(block.Compute(noise.data(), hiss.data(), kTenWindows), 0.0F);
}

TEST(Correlation, isPearsonsAndMovesByTheSlice) {
    CorrelationBlock block;
    block.setSampleRate(44100);
    const auto a = orvel_test::noise(2048, 1);
    auto b = orvel_test::noise(2048, 2);
    for (std::size_t i = 0; i < b.size(); ++i)
        b[i] = 0.4F * b[i] + 0.6F * a[i] + 0.2F;

    // The definition: deviations from the mean over standard deviations.
    const double meanA = std::accumulate(a.begin(), a.end(), 0.0) / 2048;
    const double meanB = std::accumulate(b.begin(), b.end(), 0.0) / 2048;
    const auto covariance = [](const auto& x, double meanX, const auto& y, double meanY) {
        double sum = 0;
        for (std::size_t i = 0; i < x.size(); ++i)
            sum += (double{x[i]} - meanX) * (double{y[i]} - meanY);
        return sum;
    };
    const double r = covariance(a, meanA, b, meanB) /
                     std::sqrt(covariance(a, meanA, a, meanA) * covariance(b, meanB, b, meanB));

    EXPECT_EQ(block.Compute(a.data(), b.data(), 2047), 0.0F) << "no window is complete yet";
    EXPECT_NEAR(block.Compute(a.data() + 2047, b.data() + 2047, 1), r, 1e-4);

    block.reset();
    double smoothed = 0;
    for (std::size_t at = 0; at + 32 <= 2048; at += 32) {
        block.feed(&a[at], &b[at], 32);
        smoothed += ((at + 32 == 2048 ? r : 0) - smoothed) * 0.007;
    }
    EXPECT_NEAR(block.correlation(), smoothed, 1e-6);
}

// ---- goniometer

TEST(Goniometer, pointsStandWhereTheFieldExpectsThem) {
    GoniometerStream stream;
    const float left[] = {1, 0, 0.5F, 0.5F};
    const float right[] = {0, 1, 0.5F, -0.5F};
    stream.push(left, right, 4); // reaches full scale: drawn to the edge
    auto points = std::make_unique<std::array<GoniometerPoint, GoniometerStream::kNumPoints>>();
    stream.read(*points);
    const auto* const last = points->data() + points->size() - 4;
    EXPECT_EQ(last[0].side, -0.5F) << "left is to the left";
    EXPECT_EQ(last[0].mid, 0.5F);
    EXPECT_EQ(last[1].side, 0.5F);
    EXPECT_EQ(last[2].side, 0.0F) << "mono is a vertical line";
    EXPECT_EQ(last[3].mid, 0.0F) << "antiphase is a horizontal one";
    EXPECT_EQ((*points)[0].mid, 0.0F);

    const float quiet[] = {0.5F};
    const float loud[] = {-4};
    stream.push(quiet, quiet, 1);
    stream.push(loud, loud, 1);
    stream.read(*points);
    EXPECT_FLOAT_EQ((*points)[points->size() - 2].mid, 0.45F);
    EXPECT_FLOAT_EQ((*points)[points->size() - 1].mid, -1);

    for (int i = 0; i < 2000; ++i)
        stream.push(left, right, 4);
    stream.read(*points);
    EXPECT_EQ((*points)[0].side, -0.5F) << "oldest first, all from the last 4096 samples";
}

} // namespace
} // namespace Orvel
