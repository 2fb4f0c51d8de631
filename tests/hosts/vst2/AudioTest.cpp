// Blocks of audio through the adapter: channels, sizes, transport, events, the heap.
#include "AdapterFixture.h"
#include "AllocationCount.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <thread>

namespace {

using namespace vst2;
using Samples = std::vector<float>;

class Audio : public AdapterFixture {
  protected:
    static constexpr int kNotGiven = -1;
    bool arrange(int inputs, int outputs, int inputType = -100) {
        VstSpeakerArrangement in{};
        VstSpeakerArrangement out{};
        in.type = inputType != -100 ? inputType : inputs - 1; // mono 0, stereo 1
        in.numChannels = inputs;
        out.type = outputs - 1;
        out.numChannels = outputs;
        return effect.ask(effSetSpeakerArrangement, 0,
                          inputs == kNotGiven ? 0 : reinterpret_cast<std::intptr_t>(&in),
                          outputs == kNotGiven ? nullptr : &out) == 1;
    }

    Effect effect{create()};
};

TEST_F(Audio, InPlaceCrossedAndAccumulating) {
    Samples a{2, 4};
    Samples b{6, 8};
    float* straight[] = {a.data(), b.data()};
    float* crossed[] = {b.data(), a.data()};
    effect->processReplacing(effect.get(), straight, straight, 2);
    EXPECT_EQ(a, (Samples{1, 2}));
    EXPECT_EQ(b, (Samples{3, 4}));
    effect->processReplacing(effect.get(), straight, crossed, 2);
    EXPECT_EQ(a, (Samples{1.5F, 2}));
    EXPECT_EQ(b, (Samples{0.5F, 1}));
    Samples c{100, 100};
    float* sum[] = {c.data(), nullptr};
    effect->process(effect.get(), straight, sum, 2);
    EXPECT_EQ(c, (Samples{100.75F, 101}));
}

TEST_F(Audio, MissingPointersAreSilenceAndUnwritten) {
    Samples a{2, 4};
    Samples left(2, -1.0F);
    Samples right(2, -1.0F);
    float* in[] = {nullptr, a.data()};
    float* out[] = {left.data(), right.data()};
    effect->processReplacing(effect.get(), in, out, 2);
    EXPECT_EQ(left, (Samples{0, 0}));
    EXPECT_EQ(right, (Samples{1, 2}));
    effect->processReplacing(effect.get(), nullptr, out, 2);
    EXPECT_EQ(right, (Samples{0, 0}));
    out[0] = nullptr;
    in[0] = a.data();
    effect->processReplacing(effect.get(), in, out, 2);
    EXPECT_EQ(right, (Samples{1, 2}));
    const int before = plugin().blocks;
    effect->processReplacing(effect.get(), in, nullptr, 2);
    EXPECT_EQ(plugin().blocks, before + 1) << "an analyser listens also where nobody does";
    effect->processReplacing(effect.get(), in, out, 0);
    effect->processReplacing(effect.get(), in, out, -5);
    EXPECT_EQ(plugin().blocks, before + 1);
}

TEST_F(Audio, MonoAndStereoArrangements) {
    EXPECT_TRUE(arrange(1, 1));
    auto out = effect.run({{2, 4}}, 1);
    EXPECT_EQ(out[0], (Samples{1, 2}));
    EXPECT_EQ(plugin().block.inputPairs, 1) << "the plug-in always sees a pair";
    EXPECT_TRUE(arrange(1, 2));
    out = effect.run({{2, 4}}, 2);
    EXPECT_EQ(out[1], (Samples{1, 2})) << "one source feeds both sides";
    EXPECT_TRUE(arrange(kNotGiven, 1)) << "one side alone";
    EXPECT_TRUE(arrange(2, 1));
    out = effect.run({{2, 4}, {6, 8}}, 1);
    EXPECT_EQ(out[0], (Samples{1, 2}));

    for (const int channels : {0, 3, 4, 6, -3, std::numeric_limits<int>::max()})
        EXPECT_FALSE(arrange(channels, 2)) << channels;
    EXPECT_FALSE(arrange(2, 8));
    EXPECT_FALSE(arrange(2, 2, 4)) << "two channels, but no left and right";
    EXPECT_FALSE(arrange(kNotGiven, kNotGiven));
    out = effect.run({{2, 4}, {6, 8}}, 1);
    EXPECT_EQ(out[0], (Samples{1, 2})) << "what is refused changes nothing";
}

TEST_F(Audio, SidechainNeedsFourInputs) {
    effect.close();
    module().records[0].hasSidechain = true;
    Effect four(create());
    auto out = four.run({{2}, {4}, {10}, {20}}, 2);
    EXPECT_TRUE(plugin().block.hasSidechain);
    EXPECT_EQ(plugin().block.inputPairs, 2);
    EXPECT_EQ(out[0], Samples{11});
    EXPECT_EQ(out[1], Samples{22});

    float samples[1] = {2};
    float* half[] = {samples, samples, samples, nullptr};
    float* outs[] = {nullptr, nullptr};
    four->processReplacing(four.get(), half, outs, 1);
    EXPECT_FALSE(plugin().block.hasSidechain);

    VstSpeakerArrangement stereo{};
    stereo.type = kSpeakerArrStereo;
    stereo.numChannels = 2;
    ASSERT_EQ(
        four.ask(effSetSpeakerArrangement, 0, reinterpret_cast<std::intptr_t>(&stereo), nullptr),
        1);
    out = four.run({{2}, {4}}, 2);
    EXPECT_FALSE(plugin().block.hasSidechain);
    EXPECT_EQ(out[1], Samples{2});
}

TEST_F(Audio, LongerBlocksThanAnnouncedMakeRoom) {
    effect.ask(effSetBlockSize, 0, 16);
    const Samples ramp(100, 2.0F);
    auto out = effect.run({ramp, ramp}, 2);
    EXPECT_EQ(out[1], Samples(100, 1.0F));
    effect.run({{1}, {1}}, 2);
    EXPECT_EQ(plugin().blockSizes, (std::vector<int>{1024, 16, 100}));
    EXPECT_EQ(plugin().block.frames, 1);

    // A length that is a mistake costs no memory: the block passes unseen.
    const Samples absurd((1 << 20) + 1, 3.0F);
    const int before = plugin().blocks;
    out = effect.run({absurd, absurd}, 2);
    EXPECT_EQ(plugin().blocks, before);
    EXPECT_EQ(out[0], absurd);
}

// The host may call back in from within the block; nothing may wait for itself.
TEST_F(Audio, HostThatCallsBackInFromTheBlockDoesNotHang) {
    plugin().duringProcess = [this] {
        effect.ask(effSetBlockSize, 0, 8);
        EXPECT_TRUE(arrange(1, 1));
        const auto inner = effect.run({{5}}, 1);
        EXPECT_EQ(inner[0], Samples{5}) << "a block inside a block passes unseen";
    };
    const auto out = effect.run({{2, 4}, {6, 8}}, 2);
    EXPECT_EQ(out[1], (Samples{3, 4}));
    plugin().duringProcess = nullptr;
    EXPECT_EQ(effect.run({Samples(9, 2.0F)}, 1)[0], Samples(9, 1.0F));
}

// A block that the plug-in cannot take goes from input to output, also crossed over in place.
TEST_F(Audio, PassesUnseenWhereThePluginFails) {
    const Samples left(1000, 1.0F);
    const Samples right(1000, 2.0F);
    plugin().duringProcess = [] { throw 1; };
    auto out = effect.run({left, right}, 2);
    EXPECT_EQ(out[0], left);
    EXPECT_EQ(out[1], right);
    ASSERT_TRUE(arrange(1, 2));
    out = effect.run({right}, 2);
    EXPECT_EQ(out[1], right);
    ASSERT_TRUE(arrange(2, 2));
    Samples a = left;
    Samples b = right;
    float* straight[] = {a.data(), b.data()};
    float* crossed[] = {b.data(), a.data()};
    effect->processReplacing(effect.get(), straight, crossed, 1000);
    EXPECT_EQ(a, right);
    EXPECT_EQ(b, left);
    plugin().duringProcess = nullptr;
    EXPECT_EQ(effect.run({{2}, {2}}, 2)[0], Samples{1}) << "and the gate is open again";
}

TEST_F(Audio, TransportTakesOnlyWhatIsValid) {
    const auto next = [this] {
        effect.run({{0}, {0}}, 2);
        return plugin().block;
    };
    StubPlugin::Block block = next();
    EXPECT_EQ(block.tempo, 120.0F);
    EXPECT_EQ(block.samplePosition, 0.0);
    EXPECT_EQ(block.ppqPosition, 0.0);
    EXPECT_FALSE(block.playing);
    EXPECT_EQ(host.calls(audioMasterGetTime).back().value, 0x2E00);

    VstTimeInfo time{};
    host.time = &time;
    time.samplePos = 96000;
    time.sampleRate = 48000;
    time.tempo = 90;   // not marked
    time.ppqPos = 777; // not marked
    time.flags = kVstTransportPlaying;
    block = next();
    EXPECT_TRUE(block.playing);
    EXPECT_EQ(block.tempo, 120.0F);
    EXPECT_EQ(block.samplePosition, 96000.0);
    EXPECT_EQ(block.ppqPosition, 4.0) << "two seconds of two beats";

    time.flags = kVstTempoValid | kVstPpqPosValid;
    block = next();
    EXPECT_FALSE(block.playing);
    EXPECT_EQ(block.tempo, 90.0F);
    EXPECT_EQ(block.ppqPosition, 777.0);

    for (const double bad : {0.0, -1.0, 0.5, 1001.0, std::nan(""), double{INFINITY}}) {
        time.tempo = bad;
        EXPECT_EQ(next().tempo, 90.0F) << bad << ": the last good one stays";
    }
    time.samplePos = std::nan("");
    time.ppqPos = INFINITY;
    time.sampleRate = 0;
    block = next();
    EXPECT_EQ(block.samplePosition, 96000.0);
    EXPECT_EQ(block.ppqPosition, 3.0);

    host.time = nullptr;
    time.flags |= kVstTransportPlaying;
    block = next();
    EXPECT_EQ(block.tempo, 90.0F);
    EXPECT_FALSE(block.playing);
}

TEST_F(Audio, EventsComeWithTheNextBlockOnce) {
    std::vector<VstMidiEvent> midi(3);
    for (auto& event : midi) {
        event.type = kVstMidiType;
        event.byteSize = sizeof event;
    }
    midi[0].deltaFrames = 5;
    midi[0].midiData[0] = 0x93;
    midi[0].midiData[1] = 60;
    midi[0].midiData[2] = 127;
    midi[1].type = 6; // system exclusive
    struct {
        std::int32_t count = 4;
        std::intptr_t reserved = 0;
        void* list[4] = {};
    } events;
    static_assert(offsetof(decltype(events), list) == offsetof(VstEvents, events));
    events.list[0] = &midi[0];
    events.list[1] = &midi[1];
    events.list[3] = &midi[2];
    EXPECT_EQ(effect.ask(effProcessEvents, 0, 0, &events), 1);
    EXPECT_TRUE(plugin().events.empty()) << "not before the block";
    effect.run({{0}, {0}}, 2);
    ASSERT_EQ(plugin().events.size(), 2U);
    const Vardo::MidiRecord& note = plugin().events[0];
    EXPECT_EQ(note.deltaFrames, 5);
    EXPECT_EQ(note.status, 0x93);
    EXPECT_EQ(note.data1, 60);
    EXPECT_EQ(note.data2, 127);
    EXPECT_EQ(note.message, 0x90);
    EXPECT_EQ(note.normalizedData2, 1.0F);
    plugin().events.clear();
    effect.run({{0}, {0}}, 2);
    EXPECT_TRUE(plugin().events.empty());

    events.count = -1;
    EXPECT_EQ(effect.ask(effProcessEvents, 0, 0, &events), 1);
    effect.run({{0}, {0}}, 2);
    EXPECT_TRUE(plugin().events.empty());

    // A host that sends and never plays cannot fill the memory.
    events.count = 1;
    for (std::size_t i = 0; i < Vardo::MidiQueue::kMost + 10; ++i)
        effect.ask(effProcessEvents, 0, 0, &events);
    effect.run({{0}, {0}}, 2);
    EXPECT_EQ(plugin().events.size(), Vardo::MidiQueue::kMost);
}

TEST_F(Audio, TakesNothingFromTheHeap) {
    if (!allocationsAreCounted()) GTEST_SKIP() << "a sanitizer brings its own heap";
    VstTimeInfo time{};
    time.flags = kVstTempoValid;
    time.tempo = 100;
    host.time = &time;
    host.recording = false;
    VstMidiEvent midi{};
    midi.type = kVstMidiType;
    VstEvents events{};
    events.numEvents = 1;
    events.events[0] = reinterpret_cast<VstEvent*>(&midi);
    plugin().events.reserve(4);
    Samples a(1024, 1.0F);
    Samples b(1024, 1.0F);
    float* channels[] = {a.data(), b.data()};
    AEffect* raw = effect.get();
    raw->processReplacing(raw, channels, channels, 1024);

    const std::size_t before = allocationsOfThisThread();
    for (int frames = 1; frames <= 1024; frames += 31) {
        effect.ask(effProcessEvents, 0, 0, &events);
        raw->setParameter(raw, 0, static_cast<float>(frames) / 1024.0F);
        raw->processReplacing(raw, channels, channels, frames);
        raw->process(raw, channels, channels, frames);
    }
    EXPECT_EQ(allocationsOfThisThread() - before, 0U);
}

} // namespace
