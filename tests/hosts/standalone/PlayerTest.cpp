// The player as a host: every frame once, in blocks none too short; transport; a watch over audio.
#include "Player.h"
#include "FakePlugin.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <vector>

namespace Standalone {
namespace {

// Passes audio through and writes down what the host does.
class RecordingPlugin final : public FakePlugin {
  public:
    void process(Vardo::IProcessContext& context) override {
        const int n = context.getNumSamples();
        EXPECT_LE(n, declared.back());
        EXPECT_TRUE(context.isPlaying());
        EXPECT_EQ(context.getSamplePosition(), static_cast<double>(heard.size()));
        EXPECT_DOUBLE_EQ(context.getPpqPosition(),
                         static_cast<double>(heard.size()) / 1000 * 90 / 60);
        EXPECT_EQ(context.getTempo(), 90.0F);
        calls.push_back(n);
        FakePlugin::process(context);
        heard.insert(heard.end(), context.getInputs()[0], context.getInputs()[0] + n);
        if (spoilAt >= 0 && static_cast<int>(heard.size()) > spoilAt) {
            context.getInputs()[1][0] = -0.0F; // a spoilt input must not hide it
            context.getOutputs()[1][0] = -0.0F;
        }
    }
    void setSampleRate(double newRate) override {
        EXPECT_TRUE(declared.empty()) << "the rate comes first";
        rate = newRate;
    }
    void setBlockSize(int samples) override { declared.push_back(samples); }

    std::vector<int> declared;
    std::vector<int> calls;
    std::vector<float> heard;
    int spoilAt = -1;
};

TEST(Player, PlaysEveryFrameOnceInBlocksOfAtLeastTen) {
    for (const int frames : {10, 19, 511, 512, 513, 1029, 1034, 100000})
        for (const int block : {1, 9, 10, 11, 13, 19, 20, 21, 512, 4096, 70000}) {
            SCOPED_TRACE(testing::Message() << frames << " in blocks of " << block);
            RecordingPlugin plugin;
            Ramp ramp(frames);
            Player player(plugin, ramp, block, 90);
            EXPECT_EQ(player.play({}), frames);
            ASSERT_EQ(plugin.heard.size(), static_cast<std::size_t>(frames));
            for (int i = 0; i < frames; ++i)
                ASSERT_EQ(plugin.heard[static_cast<std::size_t>(i)], Ramp::valueAt(i));
            EXPECT_LE(*std::max_element(plugin.calls.begin(), plugin.calls.end()), block);
            EXPECT_EQ(plugin.declared.front(), std::max(block, 10));
            EXPECT_GE(*std::min_element(plugin.declared.begin(), plugin.declared.end()), 10);
        }
}

TEST(Player, OnlyTheEndDiffersFromThePlannedSize) {
    using Blocks = std::vector<int>;
    const struct {
        int block;
        int frames;
        Blocks declared;
    } cases[] = {
        {512, 1024, {512}},
        {512, 1034, {512, 10}},
        {512, 1033, {512, 261, 260}},
        {512, 513, {512, 257, 256}},
        {512, 100, {512, 100}},
        {10, 35, {10, 15}},  // no room for two blocks of ten
        {512, 9, {512, 10}}, // only a recording too short as a whole is filled up
        {512, 0, {512}},
    };
    for (const auto& each : cases) {
        RecordingPlugin plugin;
        Ramp ramp(each.frames);
        EXPECT_EQ(Player(plugin, ramp, each.block, 90).play({}), each.frames);
        EXPECT_EQ(plugin.declared, each.declared) << each.frames;
        EXPECT_EQ(plugin.rate, 1000);
    }
}

TEST(Player, NoticesASingleChangedBit) {
    RecordingPlugin plugin;
    plugin.spoilAt = 50000;
    Ramp ramp(60000);
    EXPECT_THROW(Player(plugin, ramp, 512, 90).play({}), std::runtime_error);
}

} // namespace
} // namespace Standalone
