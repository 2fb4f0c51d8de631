// Blocks of a recording: every frame once, none too short, as few odd ones as can be.
#include "BlockPlan.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <numeric>
#include <vector>

namespace Standalone {
namespace {

// Plays `frames` through the plan with a reader that delivers at most `gulp` samples at a time.
std::vector<int> blocksOf(const BlockPlan& plan, std::int64_t frames, int gulp) {
    std::vector<int> blocks;
    std::int64_t unread = frames;
    std::int64_t available = 0;
    for (;;) {
        const int block = plan.nextBlock(available, unread == 0);
        if (block > 0) {
            blocks.push_back(block);
            available = std::max<std::int64_t>(0, available - block);
        } else if (unread > 0) {
            const std::int64_t read = std::min<std::int64_t>(gulp, unread);
            unread -= read;
            available += read;
        } else {
            return blocks;
        }
    }
}

TEST(BlockPlan, EveryFrameIsInExactlyOneBlockOfAtLeastTen) {
    for (const int declared : {1, 9, 10, 11, 15, 19, 20, 21, 64, 441, 512})
        for (std::int64_t frames = 10; frames < 3 * 512 + 30; ++frames)
            for (const int gulp : {1, 100000}) {
                const BlockPlan plan(declared);
                const std::vector<int> blocks = blocksOf(plan, frames, gulp);
                ASSERT_EQ(std::accumulate(blocks.begin(), blocks.end(), std::int64_t{0}), frames)
                    << "block " << declared;
                ASSERT_GE(*std::min_element(blocks.begin(), blocks.end()), 10)
                    << "block " << declared << ", frames " << frames;
                ASSERT_LE(*std::max_element(blocks.begin(), blocks.end()), plan.largestBlock())
                    << "block " << declared << ", frames " << frames;
            }
}

TEST(BlockPlan, OnlyTheEndDiffersFromThePlannedSize) {
    using Blocks = std::vector<int>;
    EXPECT_EQ(blocksOf(BlockPlan(512), 1024, 7), (Blocks{512, 512}));
    EXPECT_EQ(blocksOf(BlockPlan(512), 1034, 7), (Blocks{512, 512, 10}));
    EXPECT_EQ(blocksOf(BlockPlan(512), 1033, 7), (Blocks{512, 261, 260}));
    EXPECT_EQ(blocksOf(BlockPlan(512), 513, 7), (Blocks{257, 256}));
    EXPECT_EQ(blocksOf(BlockPlan(512), 100, 7), (Blocks{100}));
    // No room for two blocks of ten: one that is slightly larger.
    EXPECT_EQ(blocksOf(BlockPlan(10), 35, 7), (Blocks{10, 10, 15}));
    EXPECT_EQ(blocksOf(BlockPlan(1), 19, 7), (Blocks{19}));
    // Only a stream too short as a whole is filled up.
    EXPECT_EQ(blocksOf(BlockPlan(512), 9, 7), (Blocks{10}));
    EXPECT_TRUE(blocksOf(BlockPlan(512), 0, 7).empty());
    EXPECT_EQ(blocksOf(BlockPlan(1048576), 2097153, 4096), (Blocks{1048576, 524289, 524288}));
}

} // namespace
} // namespace Standalone
