// Every version of the sample loops against the plain loop, bit for bit.
#include "kernels/Kernels.h"
#include "Signals.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>

namespace Orvel {
namespace {

class KernelsTest : public testing::TestWithParam<const Kernels*> {
  protected:
    void SetUp() override {
        if (GetParam() == nullptr) GTEST_SKIP() << "this processor has no AVX2";
    }
    const Kernels& kernels() const { return *GetParam(); }
};

std::vector<float> awkward(int samples, std::uint32_t seed) {
    auto values = orvel_test::noise(samples, seed, 2.0F);
    constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
    constexpr float kSpecial[] = {0.0F,    -0.0F, 1.0F,   -1.0F,     1e-40F,     -1e-40F, 14.65F,
                                  -14.66F, 1e6F,  -3e38F, HUGE_VALF, -HUGE_VALF, kNan,    -kNan};
    std::mt19937 generator(seed);
    for (float& value : values)
        if (generator() % 4 == 0) value = kSpecial[generator() % std::size(kSpecial)];
    return values;
}

std::vector<float> measurable(int samples, std::uint32_t seed) {
    auto values = awkward(samples, seed);
    for (float& value : values)
        value = std::isnan(value) ? 0 : std::clamp(value, -1e6F, 1e6F);
    return values;
}

TEST_P(KernelsTest, conditioningGivesOnlyMeasurableSamples) {
    for (int count = 0; count < 70; ++count) {
        for (const float gain : {1.0F, 0.3F, 0.0F}) {
            const auto before = awkward(count, static_cast<std::uint32_t>(count));
            std::vector<float> values(before.size());
            kernels().conditionInput(before.data(), count, gain, values.data());
            for (std::size_t i = 0; i < values.size(); ++i) {
                const float scaled = before[i] * gain;
                const float expected = std::isnan(scaled) ? 0 : std::clamp(scaled, -1e6F, 1e6F);
                ASSERT_EQ(std::bit_cast<std::uint32_t>(values[i]),
                          std::bit_cast<std::uint32_t>(expected))
                    << before[i] << " x " << gain;
            }
        }
    }
}

TEST_P(KernelsTest, channelsAndPeaksAreThoseOfThePlainLoop) {
    for (int count = 1; count < 70; ++count) {
        const auto left = measurable(count, 1U + static_cast<std::uint32_t>(count));
        auto right = measurable(count, 500U + static_cast<std::uint32_t>(count));
        if (count > 3) right[3] = -left[3]; // a tie goes to the right channel

        std::vector<float> mid(left.size());
        std::vector<float> side(left.size());
        std::vector<float> max(left.size());
        float peaks[5];
        kernels().formChannels(left.data(), right.data(), count, mid.data(), side.data(),
                               max.data(), peaks);

        float expected[5] = {};
        for (std::size_t i = 0; i < left.size(); ++i) {
            const float values[5] = {left[i], right[i], (left[i] + right[i]) * 0.5F,
                                     (left[i] - right[i]) * 0.5F,
                                     std::abs(left[i]) > std::abs(right[i]) ? left[i] : right[i]};
            ASSERT_EQ(mid[i], values[2]);
            ASSERT_EQ(side[i], values[3]);
            ASSERT_EQ(max[i], values[4]);
            for (int c = 0; c < 5; ++c)
                expected[c] = std::max(expected[c], std::abs(values[c]));
        }
        for (int c = 0; c < 5; ++c)
            ASSERT_EQ(peaks[c], expected[c]) << "channel " << c << " of " << count;
    }
}

TEST_P(KernelsTest, squaresSlideInWholeNumbersAndSaturate) {
    for (int count = 1; count < 70; ++count) {
        const auto values = measurable(count, 77U + static_cast<std::uint32_t>(count));
        std::vector<std::uint32_t> ring(values.size());
        std::mt19937 generator(5);
        for (auto& entry : ring)
            entry = static_cast<std::uint32_t>(generator());
        const auto old = ring;

        const std::uint64_t change = kernels().slideSquares(values.data(), count, ring.data());

        std::uint64_t expected = 0;
        for (std::size_t i = 0; i < values.size(); ++i) {
            const float square = values[i] * 20000000.0F * values[i];
            const std::uint32_t entry =
                square >= 4294967296.0F ? 4294967040U : static_cast<std::uint32_t>(square);
            ASSERT_EQ(ring[i], entry) << values[i];
            expected += entry;
            expected -= old[i];
        }
        ASSERT_EQ(change, expected);
    }
}

TEST_P(KernelsTest, rangesAreLowestAndHighest) {
    for (int count = 1; count < 80; ++count) {
        auto values = orvel_test::noise(count, static_cast<std::uint32_t>(count));
        if (count % 3 == 0) values[0] = -0.0F;
        if (count % 5 == 0) std::fill(values.begin(), values.end(), -1e-40F);
        float low = 0;
        float high = 0;
        kernels().findRange(values.data(), count, &low, &high);
        EXPECT_EQ(low, *std::min_element(values.begin(), values.end()));
        EXPECT_EQ(high, *std::max_element(values.begin(), values.end()));
    }
}

INSTANTIATE_TEST_SUITE_P(Versions,
                         KernelsTest,
                         testing::Values(&kBaselineKernels, avx2Kernels()),
                         [](const auto& version) {
                             return version.index == 0 ? "baseline" : "avx2";
                         });

} // namespace
} // namespace Orvel
