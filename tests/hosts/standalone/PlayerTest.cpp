// The player as a host: set-up calls, blocks, transport, and a watch over the audio.
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
        EXPECT_EQ(context.getNumInputPairs(), 1);
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

TEST(Player, PlaysEveryFrameOnceInBlocksOfTheDeclaredSize) {
    for (const int frames : {10, 511, 512, 513, 1024, 1029, 1034, 100000})
        for (const int block : {1, 13, 512, 4096, 70000}) {
            RecordingPlugin plugin;
            Ramp ramp(frames);
            Player player(plugin, ramp, block, 90);
            EXPECT_EQ(player.play({}), frames);
            ASSERT_EQ(plugin.heard.size(), static_cast<std::size_t>(frames)) << "block " << block;
            for (std::size_t i = 0; i < plugin.heard.size(); ++i)
                ASSERT_EQ(plugin.heard[i], static_cast<float>(i + 1));
            EXPECT_LE(*std::max_element(plugin.calls.begin(), plugin.calls.end()),
                      std::max(block, 1));
            EXPECT_EQ(plugin.declared.front(), std::max(block, 10));
        }
}

TEST(Player, DeclaresTheRestAsASmallerLastBlock) {
    RecordingPlugin plugin;
    Ramp ramp(1029);
    Player(plugin, ramp, 512, 90).play({});
    EXPECT_EQ(plugin.rate, 1000);
    EXPECT_EQ(plugin.declared, (std::vector<int>{512, 259, 258}));
    EXPECT_EQ(plugin.calls, (std::vector<int>{512, 259, 258}));
}

TEST(Player, NoticesASingleChangedBit) {
    RecordingPlugin plugin;
    plugin.spoilAt = 50000;
    Ramp ramp(60000);
    EXPECT_THROW(Player(plugin, ramp, 512, 90).play({}), std::runtime_error);
}

} // namespace
} // namespace Standalone
