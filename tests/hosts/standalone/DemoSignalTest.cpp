// The demonstration signal measures like music: level, width, a few clipped peaks.
#include "DemoSignal.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace Standalone {
namespace {

struct Pair {
    std::vector<float> left, right;
};

Pair readAll(int gulp) {
    DemoSignal demo;
    Pair all;
    std::vector<float> left(static_cast<std::size_t>(gulp));
    std::vector<float> right(left.size());
    for (;;) {
        const int got = demo.read(left.data(), right.data(), gulp);
        all.left.insert(all.left.end(), left.begin(), left.begin() + got);
        all.right.insert(all.right.end(), right.begin(), right.begin() + got);
        if (got < gulp) return all;
    }
}

TEST(DemoSignal, IsEightSecondsAndTheSameEveryTime) {
    const Pair once = readAll(1000);
    EXPECT_EQ(once.left.size(), 8U * 48000U);
    const Pair again = readAll(777);
    EXPECT_EQ(once.left, again.left);
    EXPECT_EQ(once.right, again.right);
}

TEST(DemoSignal, HasTheLevelsOfMusic) {
    const Pair demo = readAll(4096);
    double energy = 0, side = 0;
    int clipped = 0;
    for (std::size_t i = 0; i < demo.left.size(); ++i) {
        const double l = static_cast<double>(demo.left[i]);
        const double r = static_cast<double>(demo.right[i]);
        energy += l * l;
        side += (l - r) * (l - r) / 4;
        ASSERT_LE(std::max(std::abs(demo.left[i]), std::abs(demo.right[i])),
                  DemoSignal::kClipLevel);
        if (std::abs(demo.left[i]) == DemoSignal::kClipLevel) ++clipped;
    }
    const double rmsDb = 10 * std::log10(energy / static_cast<double>(demo.left.size()));
    EXPECT_NEAR(rmsDb, -15, 5);
    EXPECT_GT(10 * std::log10(side / energy), -25) << "wide";
    // A few clipped peaks, not a clipped recording: flat tops of some milliseconds in all.
    EXPECT_GT(clipped, 20);
    EXPECT_LT(clipped, 4800);
}

} // namespace
} // namespace Standalone
