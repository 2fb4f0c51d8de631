// The plug-in binary as a host meets it: loaded by name, run, stored, unloaded.
#include "BinaryModule.h"
#include "FakeHost.h"
#include "Hammer.h"
#include "Signals.h"
#include "core/Settings.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <thread>

namespace {

using orvel_test::noise;

using namespace vst2;
std::string outputOf(const std::string& command) {
    std::string text;
    FILE* pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) return text;
    char piece[256];
    while (std::fgets(piece, sizeof piece, pipe) != nullptr)
        text += piece;
    pclose(pipe);
    return text;
}

bool isMapped() {
    std::ifstream maps("/proc/self/maps");
    std::string line;
    while (std::getline(maps, line))
        if (line.find("OrvelScope.so") != std::string::npos) return true;
    return false;
}

int threadCount() {
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line))
        if (line.rfind("Threads:", 0) == 0) return std::stoi(line.substr(8));
    return -1;
}

/// True when the process comes down to `count` threads; one that was joined leaves the system's
/// list a moment later.
bool comesDownTo(int count) {
    for (int attempt = 0; attempt < 2000 && threadCount() > count; ++attempt)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    return threadCount() == count;
}

std::vector<char> stateOf(const Effect& effect) {
    void* data = nullptr;
    const std::intptr_t size = effect.ask(effGetChunk, 0, 0, &data);
    if (size <= 0 || data == nullptr) return {};
    return {static_cast<char*>(data), static_cast<char*>(data) + size};
}

/// As the user chose it on an earlier day: analysis on the audio thread, or on one of its own.
void chooseThreading(bool on) {
    ASSERT_TRUE(Core::writeSetting(Core::settingsPath(), "THREADING", on ? "TRUE" : "FALSE"));
}

class Binary : public testing::Test {
  protected:
    FakeHost host;
    BinaryModule module;
};

TEST_F(Binary, ExportsItsEntryPointsOnly) {
    std::set<std::string> names;
    std::istringstream lines(outputOf("nm -D --defined-only '" ORVEL_VST2_BINARY "'"));
    for (std::string address, type, name; lines >> address >> type >> name;)
        names.insert(name);
    EXPECT_EQ(names, (std::set<std::string>{"MAIN", "VSTPluginMain", "main"}));
    for (const char* name : {"MAIN", "VSTPluginMain", "main"}) {
        Effect effect(module.create(name));
        ASSERT_NE(effect.get(), nullptr) << name;
        EXPECT_EQ(effect->magic, kEffectMagic);
    }
    host.version = 0;
    EXPECT_EQ(module.create(), nullptr);
}

TEST_F(Binary, SaysWhatItIs) {
    Effect effect(module.create());
    ASSERT_NE(effect.get(), nullptr);
    effect.ask(effOpen);
    EXPECT_EQ(effect->uniqueID, fourLetters("Qrnt"));
    EXPECT_EQ(effect->numParams, 9);
    EXPECT_EQ(effect->numPrograms, 1);
    EXPECT_EQ(effect->numInputs, 2);
    EXPECT_EQ(effect->numOutputs, 2);
    EXPECT_EQ(effect->initialDelay, 0);
    EXPECT_NE(effect->flags & effFlagsProgramChunks, 0);
    EXPECT_EQ(effect.text(effGetEffectName), "Orvel Scope");
    EXPECT_EQ(effect.text(effGetProductString), "Quillmere Orvel Line");
    EXPECT_EQ(effect.text(effGetVendorString), "Quillmere");
    EXPECT_EQ(effect.ask(effGetVendorVersion), 0x10004);
    const char* names[] = {"Input Gain",
                           "Freeze Scope",
                           "Show Transients",
                           "Show Male 'Ess' Sections",
                           "Show Female 'Ess' Sectio",
                           "Freeze Spectrum",
                           "Rotate",
                           "Projector Frequency",
                           "Peak Reset"};
    for (int i = 0; i < 9; ++i)
        EXPECT_EQ(effect.text(effGetParamName, i), names[i]);
    EXPECT_EQ(effect.text(effGetParamLabel, 0), "dB");
    EXPECT_FALSE(effect.text(effGetParamDisplay, 0).empty());

    host.forget();
    effect.ask(effMainsChanged, 0, 1);
    EXPECT_EQ(host.count(audioMasterWantMidi), 0);
}

TEST_F(Binary, AudioPassesBitForBitAtAnyBlockSize) {
    Effect first(module.create());
    Effect second(module.create());
    ASSERT_NE(first.get(), nullptr);
    ASSERT_NE(second.get(), nullptr);
    for (const Effect* effect : {&first, &second}) {
        effect->ask(effSetSampleRate, 0, 0, nullptr, 48000.0F);
        effect->ask(effSetBlockSize, 0, 512);
        effect->ask(effMainsChanged, 0, 1);
    }
    for (const int block : {1, 7, 64, 480, 512, 1000, 4096}) {
        for (int round = 0; round < 8; ++round) {
            const auto left = noise(block, 1U + unsigned(round));
            const auto right = noise(block, 100U + unsigned(round));
            for (const Effect* effect : {&first, &second}) {
                const auto out = effect->run({left, right}, 2);
                ASSERT_EQ(std::memcmp(out[0].data(), left.data(), left.size() * 4), 0) << block;
                ASSERT_EQ(std::memcmp(out[1].data(), right.data(), right.size() * 4), 0) << block;
            }
        }
    }
}

TEST_F(Binary, StateMovesToAnotherInstance) {
    Effect first(module.create());
    Effect second(module.create());
    ASSERT_NE(first.get(), nullptr);
    ASSERT_NE(second.get(), nullptr);
    for (int i = 0; i < 9; ++i)
        first->setParameter(first.get(), i, i % 2 == 0 ? 0.3F : 1.0F);
    first.ask(effEditIdle);
    std::vector<char> state = stateOf(first);
    ASSERT_FALSE(state.empty());
    EXPECT_NE(stateOf(second), state);
    EXPECT_EQ(second.ask(effSetChunk, 0, static_cast<std::intptr_t>(state.size()), state.data()),
              static_cast<std::intptr_t>(state.size()));
    EXPECT_EQ(stateOf(second), state);
    for (int i = 0; i < 9; ++i)
        EXPECT_EQ(second->getParameter(second.get(), i), first->getParameter(first.get(), i)) << i;
}

class BinaryThreads : public testing::TestWithParam<bool> {
  protected:
    void SetUp() override { chooseThreading(GetParam()); }
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
    Effect effect(module.create());
    ASSERT_NE(effect.get(), nullptr);
    hammer(effect, 100, 1.0F);
}

TEST_P(BinaryThreads, LeaveNothingBehind) {
    ASSERT_FALSE(isMapped());
    std::thread([] {}).join(); // the thread sanitizer starts one of its own with the first
    const int threads = threadCount();
    for (int round = 0; round < 3; ++round) {
        BinaryModule module;
        ASSERT_TRUE(isMapped());
        {
            Effect first(module.create());
            Effect second(module.create());
            ASSERT_NE(first.get(), nullptr);
            ASSERT_NE(second.get(), nullptr);
            first.ask(effMainsChanged, 0, 1);
            const auto samples = noise(4096, 3);
            first.run({samples, samples}, 2);
            second.run({samples, samples}, 2);
            if (GetParam()) {
                EXPECT_GT(threadCount(), threads);
            }
        }
        EXPECT_TRUE(comesDownTo(threads));
        module.unload();
        EXPECT_FALSE(isMapped());
    }
}

} // namespace
