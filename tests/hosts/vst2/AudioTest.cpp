// Blocks of audio through the adapter: channels, sizes, transport, events, the heap, threads.
#include "AdapterFixture.h"
#include "AllocationCount.h"
#include "Hammer.h"

#include <cmath>
#include <limits>

namespace {

using namespace vst2;
using Samples = std::vector<float>;

class Audio : public AdapterFixture {
  protected:
    static constexpr int kNotGiven = -1;
    bool arrange(int inputs, int outputs, int inputType = kSpeakerArrStereo) {
        VstSpeakerArrangement in{};
        VstSpeakerArrangement out{};
        in.type = inputs == 1 ? int{kSpeakerArrMono} : inputType;
        in.numChannels = inputs;
        out.type = outputs == 1 ? kSpeakerArrMono : kSpeakerArrStereo;
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
    effect->processReplacing(effect.get(), straight, crossed, 2);
    EXPECT_EQ(a, (Samples{3, 4}));
    EXPECT_EQ(b, (Samples{1, 2}));
    Samples c{100, 100};
    float* sum[] = {c.data(), nullptr};
    effect->process(effect.get(), straight, sum, 2);
    EXPECT_EQ(c, (Samples{101.5F, 102}));
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
    out[0] = nullptr;
    effect->processReplacing(effect.get(), nullptr, out, 2);
    EXPECT_EQ(right, (Samples{0, 0}));
    effect->processReplacing(effect.get(), in, nullptr, 2);
    EXPECT_EQ(plugin().blocks, 3) << "an analyser listens also where nobody does";
    for (const int frames : {0, -5})
        effect->processReplacing(effect.get(), in, out, frames);
    EXPECT_EQ(plugin().blocks, 3);
}

TEST_F(Audio, MonoAndStereoArrangements) {
    EXPECT_TRUE(arrange(1, 1));
    EXPECT_EQ(effect.run({{2, 4}}, 1)[0], (Samples{1, 2}));
    EXPECT_EQ(plugin().block.inputPairs, 1) << "the plug-in always sees a pair";
    EXPECT_TRUE(arrange(1, 2));
    EXPECT_EQ(effect.run({{2, 4}}, 2)[1], (Samples{1, 2})) << "one source feeds both sides";
    EXPECT_TRUE(arrange(kNotGiven, 1)) << "one side alone";
    EXPECT_TRUE(arrange(2, 1));

    for (const int channels : {0, 3, 6, -3, std::numeric_limits<int>::max()})
        EXPECT_FALSE(arrange(channels, 2)) << channels;
    EXPECT_FALSE(arrange(2, 8));
    EXPECT_FALSE(arrange(2, 2, 4)) << "two channels, but no left and right";
    EXPECT_FALSE(arrange(kNotGiven, kNotGiven));
    EXPECT_EQ(effect.run({{2, 4}, {6, 8}}, 1)[0], (Samples{1, 2})) << "refused, nothing changes";
}

TEST_F(Audio, SidechainNeedsFourInputs) {
    module().records[0].hasSidechain = true;
    const Effect four(create());
    const auto out = four.run({{2}, {4}, {10}, {20}}, 2);
    EXPECT_EQ(plugin().block.inputPairs, 2);
    EXPECT_EQ(out, (std::vector<Samples>{{11}, {22}}));
    float samples[1] = {2};
    float* half[] = {samples, samples, samples, nullptr};
    four->processReplacing(four.get(), half, nullptr, 1);
    EXPECT_FALSE(plugin().block.hasSidechain);
}

TEST_F(Audio, LongerBlocksThanAnnouncedMakeRoom) {
    effect.ask(effSetBlockSize, 0, 16);
    const Samples ramp(100, 2.0F);
    EXPECT_EQ(effect.run({ramp, ramp}, 2)[1], Samples(100, 1.0F));
    effect.run({{1}, {1}}, 2);
    EXPECT_EQ(plugin().blockSizes, (std::vector<int>{1024, 16, 100}));

    // A length that is a mistake costs no memory: the block passes unseen.
    const Samples absurd((1 << 20) + 1, 3.0F);
    const int before = plugin().blocks;
    EXPECT_EQ(effect.run({absurd, absurd}, 2)[0], absurd);
    EXPECT_EQ(plugin().blocks, before);
}

// The host may call back in from within the block; nothing may wait for itself.
TEST_F(Audio, HostThatCallsBackInFromTheBlockDoesNotHang) {
    plugin().duringProcess = [this] {
        effect.ask(effSetBlockSize, 0, 8);
        EXPECT_TRUE(arrange(1, 1));
        EXPECT_EQ(effect.run({{5}}, 1)[0], Samples{5}) << "a block in a block passes unseen";
    };
    EXPECT_EQ(effect.run({{2, 4}, {6, 8}}, 2)[1], (Samples{3, 4}));
    plugin().duringProcess = nullptr;
    EXPECT_EQ(effect.run({Samples(9, 2.0F)}, 1)[0], Samples(9, 1.0F));
}

// A block that the plug-in cannot take goes from input to output, also crossed over in place.
TEST_F(Audio, PassesUnseenWhereThePluginFails) {
    const Samples left(1000, 1.0F);
    const Samples right(1000, 2.0F);
    plugin().duringProcess = [] { throw 1; };
    Samples a = left;
    Samples b = right;
    float* straight[] = {a.data(), b.data()};
    float* crossed[] = {b.data(), a.data()};
    effect->processReplacing(effect.get(), straight, crossed, 1000);
    EXPECT_EQ(a, right);
    EXPECT_EQ(b, left);
    ASSERT_TRUE(arrange(1, 2));
    EXPECT_EQ(effect.run({right}, 2)[1], right);
    plugin().duringProcess = nullptr;
    EXPECT_EQ(effect.run({{2}}, 2)[0], Samples{1}) << "and the gate is open again";
}

TEST_F(Audio, TransportTakesOnlyWhatIsValid) {
    const auto next = [this] {
        effect.run({{0}, {0}}, 2);
        return plugin().block;
    };
    EXPECT_EQ(next().tempo, 120.0F);
    EXPECT_EQ(host.calls(audioMasterGetTime).back().value, 0x2E00);

    VstTimeInfo time{};
    host.time = &time;
    time.samplePos = 96000;
    time.sampleRate = 48000;
    time.tempo = 90;   // not marked
    time.ppqPos = 777; // not marked
    time.flags = kVstTransportPlaying;
    StubPlugin::Block block = next();
    EXPECT_TRUE(block.playing);
    EXPECT_EQ(block.tempo, 120.0F);
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
    EXPECT_EQ(plugin().host->getTempo(), 90.0F) << "asked outside of a block, too";
}

/// MIDI events as a host hands them over.
struct HostEvents {
    std::int32_t count = 0;
    std::intptr_t reserved = 0;
    void* list[4] = {};
};
static_assert(offsetof(HostEvents, list) == offsetof(VstEvents, events));

TEST_F(Audio, EventsComeWithTheNextBlockOnce) {
    VstMidiEvent note{};
    note.type = kVstMidiType;
    note.deltaFrames = 5;
    note.midiData[0] = 0x93;
    note.midiData[1] = 60;
    note.midiData[2] = 127;
    VstMidiEvent exclusive{};
    exclusive.type = 6;
    HostEvents events{4, 0, {&note, &exclusive, nullptr, &note}};
    EXPECT_EQ(effect.ask(effProcessEvents, 0, 0, &events), 1);
    EXPECT_TRUE(plugin().events.empty()) << "not before the block";
    effect.run({{0}, {0}}, 2);
    ASSERT_EQ(plugin().midi(),
              (std::vector<std::array<int, 4>>{{5, 0x93, 60, 127}, {5, 0x93, 60, 127}}));
    EXPECT_EQ(plugin().events[0].message, 0x90);
    EXPECT_EQ(plugin().events[0].normalizedData2, 1.0F);

    plugin().events.clear();
    events.count = -1;
    effect.ask(effProcessEvents, 0, 0, &events);
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
    HostEvents events{1, 0, {&midi}};
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

TEST_F(Audio, GoesOnWhileEverythingChanges) {
    VstTimeInfo time{};
    time.flags = kVstTempoValid;
    time.tempo = 100;
    time.sampleRate = 48000;
    host.time = &time;
    host.recording = false;
    hammer(effect, 2000, 0.5F);
    EXPECT_GT(plugin().idles, 0);
}

} // namespace
