// The channel buffer copies what fits, starts silent, and says null where there is nothing.
#include "frame/ChannelBuffer.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

namespace Vardo {
namespace {

TEST(ChannelBuffer, resizingAlwaysGivesAlignedSilence) {
    CNChannelBuffer buffer;
    EXPECT_EQ(buffer.channel(0), nullptr);
    for (const int samples : {5, 5, 64, 0, -3}) {
        buffer.resize(samples, 3);
        EXPECT_EQ(buffer.numSamples(), std::max(0, samples));
        for (int c = 0; c < 3; ++c) {
            EXPECT_EQ(reinterpret_cast<std::uintptr_t>(buffer.channel(c)) %
                          CNChannelBuffer::kAlignment,
                      0U);
            for (int i = 0; i < samples; ++i) {
                EXPECT_EQ(buffer.channel(c)[i], 0.0F);
                buffer.channel(c)[i] = 1;
            }
        }
        EXPECT_EQ(buffer.channel(3), nullptr);
        EXPECT_EQ(buffer.channel(-1), nullptr);
    }
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__) // they end the program instead
    EXPECT_THROW(CNChannelBuffer(std::numeric_limits<int>::max(), 1 << 20), std::bad_alloc);
#endif
}

TEST(ChannelBuffer, copiesWhatBothSidesHave) {
    CNChannelBuffer buffer(4, 2);
    const std::vector<float> source(8, 0.5F);
    const float* const sources[3] = {source.data(), source.data(), source.data()};
    buffer.copyFrom(sources, 3, 8);
    EXPECT_EQ(buffer.channel(1)[3], 0.5F);
    buffer.clear(2);
    EXPECT_EQ(buffer.channel(0)[1], 0.0F);
    EXPECT_EQ(buffer.channel(0)[2], 0.5F);

    std::vector<float> target(8, 7.0F);
    float* const targets[1] = {target.data()};
    buffer.copyTo(targets, 1, 8);
    EXPECT_EQ(target, (std::vector<float>{0, 0, 0.5F, 0.5F, 7, 7, 7, 7}));
}

} // namespace
} // namespace Vardo
