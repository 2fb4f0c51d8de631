// The plug-in binary as a host meets it: loaded by name, run, stored, unloaded.
#include "BinaryModule.h"
#include "Hammer.h"
#include "LoadedModule.h"
#include "Signals.h"

namespace {

using namespace vst2;
using orvel_test::noise;

class Binary : public testing::Test {
  protected:
    FakeHost host;
    BinaryModule module;
};

TEST_F(Binary, ExportsItsEntryPointsOnly) {
    const std::set<std::string> names{"MAIN", "VSTPluginMain", "main"};
    EXPECT_EQ(exportsOf(ORVEL_VST2_BINARY), names);
    for (const std::string& name : names) {
        const Effect effect(module.create(name.c_str()));
        ASSERT_NE(effect.get(), nullptr) << name;
        EXPECT_EQ(effect->magic, kEffectMagic);
    }
}

TEST_F(Binary, SaysWhatItIs) {
    const Effect effect(module.create());
    EXPECT_EQ(effect->uniqueID, fourLetters("Qrnt"));
    EXPECT_EQ(effect->numParams, 9);
    EXPECT_EQ(effect->numInputs, 2);
    EXPECT_EQ(effect->initialDelay, 0);
    EXPECT_EQ(effect.text(effGetEffectName), "Orvel Scope");
    EXPECT_EQ(effect.text(effGetProductString), "Quillmere Orvel Line");
    EXPECT_EQ(effect.text(effGetVendorString), "Quillmere");
    EXPECT_EQ(effect.ask(effGetVendorVersion), 0x10004);
    EXPECT_EQ(effect.text(effGetParamName, 4), "Show Female 'Ess' Sectio");
    EXPECT_EQ(effect.text(effGetParamLabel, 0), "dB");
}

TEST_F(Binary, AudioPassesBitForBitAtAnyBlockSize) {
    const Effect first(module.create());
    const Effect second(module.create());
    for (const Effect* effect : {&first, &second}) {
        effect->ask(effSetSampleRate, 0, 0, nullptr, 48000.0F);
        effect->ask(effSetBlockSize, 0, 512);
        effect->ask(effMainsChanged, 0, 1);
    }
    unsigned seed = 1;
    for (const int block : {1, 7, 64, 480, 512, 1000, 4096})
        for (int round = 0; round < 8; ++round) {
            const std::vector<std::vector<float>> in{noise(block, seed++), noise(block, seed++)};
            for (const Effect* effect : {&first, &second})
                ASSERT_EQ(effect->run(in, 2), in) << block;
        }
}

class BinaryThreads : public EitherThreading {
  protected:
    FakeHost host;
};
INSTANTIATE_TEST_SUITE_P(Threading, BinaryThreads, testing::Bool());

TEST_P(BinaryThreads, SurviveAHostOfManyThreads) {
    const BinaryModule module;
    host.recording = false;
    VstTimeInfo time{};
    time.flags = kVstTempoValid | kVstTransportPlaying;
    time.tempo = 100;
    time.sampleRate = 48000;
    host.time = &time;
    hammer(Effect(module.create()), 100, 1.0F);
}

TEST_P(BinaryThreads, LeaveNothingBehind) {
    ASSERT_FALSE(isMapped("OrvelScope.so"));
    std::thread([] {}).join(); // the thread sanitizer starts one of its own with the first
    std::this_thread::sleep_for(std::chrono::milliseconds(50)); // until that one is off the list
    const int threads = threadCount();
    const std::vector<std::vector<float>> samples{noise(4096, 3), noise(4096, 4)};
    for (int round = 0; round < 3; ++round) {
        BinaryModule module;
        ASSERT_TRUE(isMapped("OrvelScope.so"));
        {
            const Effect first(module.create());
            const Effect second(module.create());
            first.ask(effMainsChanged, 0, 1);
            first.run(samples, 2);
            second.run(samples, 2);
            if (GetParam()) {
                EXPECT_GT(threadCount(), threads);
            }
        }
        EXPECT_TRUE(comesDownTo(threads));
        module.unload();
        EXPECT_FALSE(isMapped("OrvelScope.so"));
    }
}

} // namespace
