// The VST3 binary as a host meets it, alone and beside the VST2 one.
#include "BinaryModule.h"
#include "BinaryModule3.h"
#include "Hammer3.h"
#include "LoadedModule.h"
#include "Signals.h"

#include <random>
#include <sstream>

namespace vst3_test {
namespace {

using orvel_test::noise;

bool passes(const Effect3& effect, int frames, unsigned seed) {
    Block block({noise(frames, seed), noise(frames, seed + 1000)}, 2);
    return effect.processor->process(block.data) == kResultOk && block.out == block.in;
}

TEST(Binary3, ExportsItsEntryPointsOnly) {
    EXPECT_EQ(exportsOf(ORVEL_VST3_BINARY),
              (std::set<std::string>{"ExitDll", "GetPluginFactory", "InitDll", "ModuleEntry",
                                     "ModuleExit"}));
}

TEST(Binary3, SaysWhatItIsAndTheBundleSaysTheSame) {
    const BinaryModule3 module;
    PClassInfo info;
    ASSERT_EQ(module.factory().countClasses(), 1);
    ASSERT_EQ(module.factory().getClassInfo(0, &info), kResultOk);
    EXPECT_STREQ(info.name, "Orvel Scope");
    std::string hex;
    for (const char byte : info.cid) {
        char digits[3];
        std::snprintf(digits, sizeof digits, "%02X", static_cast<unsigned char>(byte));
        hex += digits;
    }
    EXPECT_EQ(hex.substr(24), "51726E74") << "Qrnt";
    std::ostringstream json;
    json << std::ifstream(ORVEL_VST3_MODULE_INFO).rdbuf();
    EXPECT_NE(json.str().find("\"CID\": \"" + hex + "\""), std::string::npos) << json.str();
}

TEST(Binary3, ParametersHaveTheirNamesAndReadWhatTheyShow) {
    const BinaryModule3 module;
    const Effect3 effect(module.factory(), nullptr);
    const char* titles[] = {"Input Gain",
                            "Freeze Scope",
                            "Show Transients",
                            "Show Male 'Ess' Sections",
                            "Show Female 'Ess' Sections",
                            "Freeze Spectrum",
                            "Rotate",
                            "Projector Frequency",
                            "Peak Reset",
                            "Bypass"};
    ASSERT_EQ(effect.controller->getParameterCount(), 10);
    for (int32 i = 0; i < 10; ++i) {
        ParameterInfo parameter{};
        ASSERT_EQ(effect.controller->getParameterInfo(i, parameter), kResultOk);
        EXPECT_EQ(text(parameter.title), titles[i]);
        String128 shown{};
        ParamValue read = -1;
        effect.controller->getParamStringByValue(parameter.id, 1, shown);
        effect.controller->getParamValueByString(parameter.id, shown, read);
        EXPECT_NEAR(read, 1, 1e-3) << text(shown);
    }
}

TEST(Binary3, AudioPassesBitForBitAtOddSizesAndRates) {
    const BinaryModule3 module;
    const Effect3 effect(module.factory(), nullptr);
    unsigned seed = 1;
    for (const double rate : {8000.0, 44100.0, 47999.5, 384000.0})
        for (const int32 announced : {1, 63, 512}) {
            effect.prepare(rate, announced);
            for (const int frames : {1, 7, 64, 480, 1000, 4096})
                ASSERT_TRUE(passes(effect, frames, seed++)) << rate << ' ' << frames;
            effect.processor->setProcessing(0); // and off in the middle of it
            effect.component->setActive(0);
        }
    Block mono({noise(333, 5)}, 1);
    effect.processor->process(mono.data);
    EXPECT_EQ(mono.out, mono.in);
}

TEST(Binary3, StateMovesToAnotherInstanceAndToTheOtherFormat) {
    const BinaryModule3 module;
    const Effect3 first(module.factory(), nullptr);
    const Effect3 second(module.factory(), nullptr);
    for (ParamID id = 0; id < 8; ++id)
        EXPECT_EQ(first.controller->setParamNormalized(id, id % 2 == 0 ? 0.3 : 1.0), kResultTrue);
    const std::vector<char> state = first.state();
    ASSERT_GT(state.size(), 8U);
    EXPECT_NE(second.state(), state);
    EXPECT_EQ(second.setState(state, 7), kResultOk);
    EXPECT_EQ(second.state(), state);

    FakeHost host;
    const ::BinaryModule other;
    const ::Effect vst2Effect(other.create());
    std::vector<char> chunk(state.begin() + 8, state.end());
    vst2Effect.ask(vst2::effSetChunk, 0, static_cast<std::intptr_t>(chunk.size()), chunk.data());
    for (int i = 0; i < 8; ++i) {
        const ParamValue value = first.controller->getParamNormalized(static_cast<ParamID>(i));
        EXPECT_EQ(second.controller->getParamNormalized(static_cast<ParamID>(i)), value) << i;
        EXPECT_FLOAT_EQ(vst2Effect->getParameter(vst2Effect.get(), i), static_cast<float>(value));
    }
    // Side by side, each runs as if it were alone.
    second.prepare(44100, 256);
    vst2Effect.ask(vst2::effMainsChanged, 0, 1);
    for (unsigned round = 0; round < 20; ++round) {
        ASSERT_TRUE(passes(second, 256, round));
        const Channels in{noise(256, round), noise(256, round + 7)};
        ASSERT_EQ(vst2Effect.run(in, 2), in);
    }
}

TEST(Binary3, DamagedStatesDoNoHarm) {
    const BinaryModule3 module;
    const Effect3 effect(module.factory(), nullptr);
    effect.prepare(48000, 128);
    const std::vector<char> good = effect.state();
    std::mt19937 random(7);
    for (int round = 0; round < 400; ++round) {
        std::vector<char> bad = good;
        for (int change = 0; change < 1 + round % 16; ++change)
            bad[random() % bad.size()] = static_cast<char>(random());
        if (round % 4 == 0) bad.resize(random() % bad.size());
        effect.setState(bad, 1 + random() % 1000);
        ASSERT_TRUE(passes(effect, 128, static_cast<unsigned>(round)));
        for (ParamID id = 0; id < 9; ++id) {
            const ParamValue value = effect.controller->getParamNormalized(id);
            ASSERT_TRUE(value >= 0 && value <= 1) << round;
        }
    }
    EXPECT_EQ(effect.setState(good), kResultOk);
    EXPECT_EQ(effect.state(), good);
}

using BinaryThreads3 = EitherThreading;
INSTANTIATE_TEST_SUITE_P(Threading, BinaryThreads3, testing::Bool());

TEST_P(BinaryThreads3, SurviveAHostOfManyThreads) {
    const BinaryModule3 module;
    RunLoop loop;
    Context context;
    context.loop = &loop;
    Handler handler;
    {
        const Effect3 effect(module.factory(), &context);
        effect.controller->setComponentHandler(&handler);
        hammer(effect, loop, 60, 1.0F);
    }
    EXPECT_EQ(loop.mistakes + loop.references + context.references + handler.references, 0);
}

TEST_P(BinaryThreads3, ComeAndGoWithoutATrace) {
    for (int round = 0; round < 3; ++round) {
        ASSERT_FALSE(isMapped("OrvelScope.vst3"));
        const BinaryModule3 module;
        ASSERT_TRUE(isMapped("OrvelScope.vst3"));
        const Effect3 first(module.factory(), nullptr);
        const Effect3 second(module.factory(), nullptr);
        ASSERT_TRUE(passes(first, 4096, 3));
        ASSERT_TRUE(passes(second, 4096, 4));
    }
    EXPECT_FALSE(isMapped("OrvelScope.vst3"));
}

} // namespace
} // namespace vst3_test
