// Blocks of audio through the adapter: channels, sizes, transport, parameters, MIDI, the heap.
#include "AdapterFixture.h"
#include "AllocationCount.h"

#include "pluginterfaces/vst/ivstprocesscontext.h"
#include "pluginterfaces/vst/vstspeaker.h"

#include <cmath>
#include <limits>
#include <thread>

namespace vst3_test {
namespace {

constexpr ParamID kBypass = Vardo::Vardo_VST3::kBypassId;

/// Events of a host for one block.
class Events final : public HostObject<IEventList> {
  public:
    int32 PLUGIN_API getEventCount() override { return static_cast<int32>(list.size()); }
    tresult PLUGIN_API getEvent(int32 index, Event& event) override {
        event = list[static_cast<std::size_t>(index)];
        return kResultOk;
    }
    tresult PLUGIN_API addEvent(Event&) override { return kResultFalse; }
    std::vector<Event> list;
};

class Audio : public AdapterFixture {
  protected:
    Audio() {
        create();
        effect->prepare(48000, 64);
    }
};

TEST_F(Audio, EveryNumberOfChannelsFindsItsPlace) {
    const std::vector<float> left{1, 2, 3};
    const std::vector<float> right{4, 5, 6};
    const std::vector<float> third{7, 8, 9};
    const std::vector<float> halfLeft{0.5F, 1, 1.5F};
    const std::vector<float> halfRight{2, 2.5F, 3};
    const std::vector<float> silence{0, 0, 0};
    struct Case {
        Channels in;
        Channels out;
    };
    const Case cases[] = {
        {{left, right}, {halfLeft, halfRight}},
        {{left}, {halfLeft}},
        {{left}, {halfLeft, halfLeft}},
        {{left, right}, {halfLeft}},
        {{left, right, third}, {halfLeft, halfRight, third, silence}},
        {{left, right}, {halfLeft, halfRight, silence}},
    };
    for (const Case& each : cases) {
        Block block(each.in, each.out.size());
        ASSERT_EQ(run(block), kResultOk);
        EXPECT_EQ(block.out, each.out) << each.in.size() << " to " << each.out.size();
        EXPECT_EQ(block.data.outputs->silenceFlags, 0U);
    }
    // In place, and crossed over.
    Block block({left, right}, 2);
    float* crossed[] = {block.in[1].data(), block.in[0].data()};
    block.data.outputs->channelBuffers32 = crossed;
    run(block);
    EXPECT_EQ(block.in, (Channels{halfRight, halfLeft}));
}

TEST_F(Audio, MissingBusesAndChannelsAreNoTrouble) {
    Block block({{1, 2}, {3, 4}}, 2);
    float* nothing[] = {nullptr, nullptr};
    block.data.inputs->channelBuffers32 = nothing;
    run(block);
    EXPECT_EQ(block.out, (Channels{{0, 0}, {0, 0}}));
    block.data.inputs->channelBuffers32 = nullptr;
    EXPECT_EQ(run(block), kResultOk);
    block.data.outputs->channelBuffers32 = nullptr;
    EXPECT_EQ(run(block), kResultOk);
    block.data.outputs->numChannels = std::numeric_limits<int32>::max();
    block.data.inputs->numChannels = -1;
    EXPECT_EQ(run(block), kResultOk);
    block.data.outputs->numChannels = 0;
    block.data.inputs->numChannels = 0;
    EXPECT_EQ(run(block), kResultOk);

    const int before = plugin().blocks;
    Block flush({{1, 2}, {3, 4}}, 2);
    flush.data.numOutputs = 0;
    EXPECT_EQ(run(flush), kResultOk);
    flush.data.numOutputs = 1;
    flush.data.numInputs = 0;
    EXPECT_EQ(run(flush), kResultOk);
    flush.data.numInputs = 1;
    flush.data.numSamples = -5;
    EXPECT_EQ(run(flush), kResultOk);
    flush.data.numSamples = 2;
    flush.data.symbolicSampleSize = kSample64;
    EXPECT_NE(run(flush), kResultOk);
    EXPECT_EQ(flush.out[0][0], -9.0F);
    EXPECT_EQ(plugin().blocks, before);
}

TEST_F(Audio, BusesTakeMonoAndStereoAndNothingElse) {
    SpeakerArrangement mono = SpeakerArr::kMono;
    SpeakerArrangement stereo = SpeakerArr::kStereo;
    SpeakerArrangement wide = SpeakerArr::k51;
    SpeakerArrangement two[] = {stereo, stereo};
    EXPECT_EQ(effect->processor->setBusArrangements(&mono, 1, &stereo, 1), kResultTrue);
    EXPECT_EQ(effect->processor->setBusArrangements(&stereo, 1, &wide, 1), kResultFalse);
    EXPECT_EQ(effect->processor->setBusArrangements(two, 2, two, 1), kResultFalse);
    EXPECT_EQ(effect->processor->setBusArrangements(nullptr, 1, &stereo, 1), kResultFalse);
    EXPECT_NE(effect->processor->setBusArrangements(&mono, -1, &mono, 1), kResultTrue);
    SpeakerArrangement now = 0;
    EXPECT_EQ(effect->processor->getBusArrangement(kInput, 0, now), kResultTrue);
    EXPECT_EQ(now, mono) << "what was refused changed nothing";
    BusInfo info;
    EXPECT_EQ(effect->component->getBusInfo(kAudio, kInput, 0, info), kResultOk);
    EXPECT_EQ(info.channelCount, 1);
    EXPECT_EQ(text(info.name), "Stereo In");
    EXPECT_EQ(effect->component->getBusInfo(kAudio, kOutput, 0, info), kResultOk);
    EXPECT_EQ(text(info.name), "Stub One Stereo Out 1");
    for (const int32 index : {-1, 1, 1 << 30}) {
        EXPECT_NE(effect->component->getBusInfo(kAudio, kInput, index, info), kResultOk);
        EXPECT_NE(effect->component->activateBus(kAudio, kOutput, index, 1), kResultOk);
        EXPECT_NE(effect->processor->getBusArrangement(kOutput, index, now), kResultOk);
    }
    EXPECT_EQ(effect->component->getBusCount(5, 7), 0);
}

TEST_F(Audio, SidechainIsABusOfItsOwn) {
    module().records[0].hasSidechain = true;
    create();
    effect->prepare(48000, 64);
    ASSERT_EQ(effect->component->getBusCount(kAudio, kInput), 2);
    Block block({{2, 4}, {6, 8}}, 2);
    std::vector<float> side{100, 200};
    float* sideChannels[] = {side.data()}; // a mono one
    AudioBusBuffers buses[2] = {*block.data.inputs, {}};
    buses[1].numChannels = 1;
    buses[1].channelBuffers32 = sideChannels;
    block.data.inputs = buses;
    run(block);
    EXPECT_FALSE(plugin().block.hasSidechain) << "the host brought one bus";
    block.data.numInputs = 2;
    run(block);
    EXPECT_TRUE(plugin().block.hasSidechain);
    EXPECT_EQ(block.out, (Channels{{101, 202}, {103, 204}}));
}

TEST_F(Audio, BlocksLongerThanAnnouncedAreAnnounced) {
    EXPECT_EQ(plugin().blockSizes.back(), 64);
    EXPECT_EQ(plugin().sampleRate, 48000);
    Block longer({std::vector<float>(1000, 1.0F), std::vector<float>(1000, 1.0F)}, 2);
    run(longer);
    EXPECT_EQ(plugin().blockSizes.back(), 1000);
    EXPECT_EQ(longer.out[1][999], 0.5F);
    const std::size_t announced = plugin().blockSizes.size();
    for (const int32 size : {0, -1, 1 << 30}) {
        ProcessSetup setup{kRealtime, kSample32, size, 48000};
        EXPECT_NE(effect->processor->setupProcessing(setup), kResultOk);
    }
    ProcessSetup bad{kRealtime, kSample32, 64, std::nan("")};
    EXPECT_NE(effect->processor->setupProcessing(bad), kResultOk);
    ProcessSetup twice{kRealtime, kSample64, 64, 48000};
    EXPECT_NE(effect->processor->setupProcessing(twice), kResultOk);
    EXPECT_EQ(plugin().blockSizes.size(), announced);
    // One that calls back in from inside a block gets it through unseen.
    Block inner({{8, 8}, {8, 8}}, 2);
    plugin().duringProcess = [&] {
        plugin().duringProcess = nullptr;
        run(inner);
        ProcessSetup setup{kRealtime, kSample32, 32, 44100};
        effect->processor->setupProcessing(setup);
    };
    Block outer({{2, 2}, {2, 2}}, 2);
    run(outer);
    EXPECT_EQ(inner.out, inner.in);
    EXPECT_EQ(outer.out[0][1], 1.0F);
}

TEST_F(Audio, TransportIsTheHosts) {
    Block block({{1, 1}, {1, 1}}, 2);
    auto& callback = *plugin().host;
    EXPECT_EQ(callback.getTempo(), 10.0F);
    ProcessContext transport{};
    transport.state = ProcessContext::kPlaying | ProcessContext::kTempoValid;
    transport.tempo = 90;
    transport.projectTimeSamples = 96000;
    block.data.processContext = &transport;
    run(block);
    EXPECT_EQ(plugin().block.tempo, 90.0F);
    EXPECT_TRUE(plugin().block.playing);
    EXPECT_EQ(plugin().block.samplePosition, 96000);
    EXPECT_DOUBLE_EQ(plugin().block.ppqPosition, 3) << "two seconds of 90 a minute";
    EXPECT_EQ(callback.getTempo(), 90.0F);
    transport.state = ProcessContext::kProjectTimeMusicValid;
    transport.projectTimeMusic = 17;
    transport.tempo = std::nan("");
    run(block);
    EXPECT_EQ(plugin().block.ppqPosition, 17);
    EXPECT_FALSE(plugin().block.playing);
    EXPECT_EQ(callback.getTempo(), 90.0F);
    block.data.processContext = nullptr;
    run(block);
    EXPECT_EQ(callback.getTempo(), 1.0F);
    EXPECT_EQ(plugin().block.tempo, 100.0F);
}

TEST_F(Audio, LastPointWinsAndGesturesHold) {
    auto& gain = *plugin().parameters[0];
    EXPECT_EQ(change({Queue(0, {{0, 0.1}, {10, 0.9}, {20, 0.25}})}), kResultOk);
    EXPECT_FLOAT_EQ(gain.getNormalizedValue(), 0.25F);
    change({Queue(0, {}), Queue(77, {{0, 1.0}}), Queue(0, {{0, std::nan("")}})});
    EXPECT_FLOAT_EQ(gain.getNormalizedValue(), 0.25F);
    change({Queue(0, {{0, 7.0}})});
    EXPECT_EQ(gain.getNormalizedValue(), 1.0F);
    plugin().host->beginEdit(0);
    change({Queue(0, {{0, 0.5}})});
    effect->controller->setParamNormalized(0, 0.5);
    EXPECT_EQ(gain.getNormalizedValue(), 1.0F) << "the user holds it";
    plugin().host->endEdit(0);
    change({Queue(0, {{0, 0.5}})});
    EXPECT_EQ(gain.getNormalizedValue(), 0.5F);
    EXPECT_EQ(effect->controller->getParamNormalized(0), 0.5);
}

TEST_F(Audio, BypassResetsWhenItGoesOffAndIsNoMore) {
    Block block({{2, 2}, {2, 2}}, 2);
    const int before = plugin().resets;
    Changes on({Queue(kBypass, {{0, 1.0}})});
    Changes off({Queue(kBypass, {{0, 0.0}})});
    for (Changes* changes : {&off, &on, &on, &off, &off}) {
        block.data.inputParameterChanges = changes;
        run(block);
        EXPECT_EQ(block.out[0][0], 1.0F) << "the plug-in goes on";
    }
    EXPECT_EQ(plugin().resets, before + 1);
    EXPECT_EQ(plugin().bypasses, 0);
}

TEST_F(Audio, MidiComesFromControllersAndEvents) {
    const ParamID first = Vardo::Vardo_VST3::kFirstMidiId;
    Changes controllers({Queue(first + 2 * 130 + 7, {{5, 1.0}}),
                         Queue(first + 15 * 130 + 129, {{9, 0.5}}), Queue(first + 128, {{1, 1.0}}),
                         Queue(first + 2080, {{0, 1.0}})});
    Events events;
    const std::uint8_t bytes[] = {0x91, 60, 127, 4, 5};
    Event event{};
    event.type = Event::kDataEvent;
    event.sampleOffset = 3;
    event.data = {5, DataEvent::kMidiSysEx, bytes};
    events.list.push_back(event);
    event.data.bytes = nullptr;
    events.list.push_back(event);
    event.type = Event::kNoteOnEvent;
    events.list.push_back(event);

    Block block({{1}, {1}}, 2);
    block.data.inputParameterChanges = &controllers;
    block.data.inputEvents = &events;
    run(block);
    const auto& got = plugin().events;
    ASSERT_EQ(got.size(), 4U);
    EXPECT_EQ(got[0].deltaFrames, 5);
    EXPECT_EQ(got[0].status, 0xB2);
    EXPECT_EQ(got[0].data1, 7);
    EXPECT_EQ(got[0].data2, 127);
    EXPECT_EQ(got[1].status, 0xEF);
    EXPECT_EQ(got[1].data1 | got[1].data2 << 7, 8191);
    EXPECT_EQ(got[2].status, 0);
    EXPECT_EQ(got[3].deltaFrames, 3);
    EXPECT_EQ(got[3].message, 0x90);
    EXPECT_EQ(got[3].normalizedData2, 1.0F);
    EXPECT_EQ(got[3].reserved, 4);
}

TEST_F(Audio, TakesNothingFromTheHeap) {
    if (!allocationsAreCounted()) GTEST_SKIP() << "a sanitizer brings its own heap";
    plugin().events.reserve(4);
    Block block({std::vector<float>(64, 1.0F), std::vector<float>(64, 1.0F)}, 2);
    Changes changes({Queue(0, {{0, 0.5}}), Queue(kBypass, {{0, 1.0}}),
                     Queue(Vardo::Vardo_VST3::kFirstMidiId, {{0, 0.5}})});
    ProcessContext transport{};
    block.data.inputParameterChanges = &changes;
    block.data.processContext = &transport;
    run(block);
    const std::size_t before = allocationsOfThisThread();
    for (int32 frames = 1; frames <= 64; ++frames) {
        block.data.numSamples = frames;
        changes.queues[0].points[0].second = frames / 64.0;
        changes.queues[1].points[0].second = frames % 2;
        run(block);
    }
    EXPECT_EQ(allocationsOfThisThread() - before, 0U);
}

TEST_F(Audio, GoesOnWhileEverythingChanges) {
    plugin().keepNotes = false;
    plugin().events.reserve(2000);
    std::atomic<bool> stop{false};
    std::atomic<int> wrong{0};
    std::thread audio([&] {
        Changes changes({Queue(0, {{0, 0.5}})});
        ProcessContext transport{};
        for (int round = 0; !stop; ++round) {
            const auto frames = static_cast<std::size_t>(1 + round * 37 % 1024);
            Block block({std::vector<float>(frames, 0.5F), std::vector<float>(frames, 0.5F)}, 2);
            block.data.inputParameterChanges = &changes;
            block.data.processContext = &transport;
            changes.queues[0].points[0].second = round % 10 / 10.0;
            run(block);
            for (const float sample : block.out[1])
                if (sample != 0.25F && sample != 0.5F) ++wrong; // halved, or unseen
        }
    });
    std::thread automation([&] {
        for (int round = 0; !stop; ++round) {
            effect->controller->setParamNormalized(static_cast<ParamID>(round % 3),
                                                   round % 7 / 7.0);
            std::this_thread::yield();
        }
    });
    const std::vector<char> state = effect->state();
    for (int round = 0; round < 1000; ++round) {
        effect->prepare(round % 2 == 0 ? 44100 : 96000, 32 << round % 5);
        effect->component->setActive(0);
        effect->setState(state);
        String128 display;
        effect->controller->getParamStringByValue(0, effect->controller->getParamNormalized(0),
                                                  display);
    }
    const int before = plugin().blocks;
    while (plugin().blocks < before + 10)
        std::this_thread::yield();
    stop = true;
    audio.join();
    automation.join();
    EXPECT_EQ(wrong, 0);
}

} // namespace
} // namespace vst3_test
