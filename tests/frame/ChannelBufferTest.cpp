// The channel buffer copies what fits, starts silent, and says null where there is nothing.
#include "frame/ChannelBuffer.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <utility>
#include <vector>

namespace Vardo {
namespace {

TEST(ChannelBuffer, resizingAlwaysGivesAlignedSilence) {
    CNChannelBuffer buffer;
    EXPECT_EQ(buffer.channel(0), nullptr);
    for (const int samples : {5, 5, 64, 0, -3}) {
        buffer.resize(samples, 3);
        for (int c = 0; c < 3; ++c) {
            const auto address = reinterpret_cast<std::uintptr_t>(buffer.channel(c));
            EXPECT_EQ(address % CNChannelBuffer::kAlignment, 0U);
            for (int i = 0; i < samples; ++i)
                EXPECT_EQ(std::exchange(buffer.channel(c)[i], 1.0F), 0.0F);
        }
        EXPECT_EQ(buffer.channel(3), nullptr);
        EXPECT_EQ(buffer.channel(-1), nullptr);
    }
}

TEST(ChannelBuffer, copiesWhatBothSidesHave) {
    CNChannelBuffer buffer(4, 2);
    const std::vector<float> source(8, 0.5F);
    const float* const sources[3] = {source.data(), source.data(), source.data()};
    buffer.copyFrom(sources, 3, 8);
    buffer.clear(2);
    std::vector<float> target(8, 7.0F);
    float* const targets[1] = {target.data()};
    buffer.copyTo(targets, 1, 8);
    EXPECT_EQ(target, (std::vector<float>{0, 0, 0.5F, 0.5F, 7, 7, 7, 7}));
}

} // namespace
} // namespace Vardo
