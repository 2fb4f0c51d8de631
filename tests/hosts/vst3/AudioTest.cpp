// Blocks of audio through the adapter: channels, transport, parameters, MIDI, the heap, threads.
#include "AdapterFixture.h"
#include "AllocationCount.h"
#include "Hammer3.h"

#include "pluginterfaces/vst/ivstprocesscontext.h"
#include "pluginterfaces/vst/vstspeaker.h"

#include <cmath>
#include <limits>

namespace vst3_test {
namespace {

constexpr ParamID kBypass = Vardo::Vardo_VST3::kBypassId;

class Audio : public AdapterFixture {
  protected:
    Audio() {
        create();
        effect->prepare(48000, 64);
    }
    tresult setUp(int32 sampleSize, int32 frames, double rate) {
        ProcessSetup setup{kRealtime, sampleSize, frames, rate};
        return effect->processor->setupProcessing(setup);
    }
};

TEST_F(Audio, EveryNumberOfChannelsFindsItsPlace) {
    const std::vector<float> a{1, 2};
    const std::vector<float> b{4, 6};
    const std::vector<float> halfA{0.5F, 1};
    const std::vector<float> halfB{2, 3};
    const struct {
        Channels in;
        Channels out;
    } cases[] = {
        {{a, b}, {halfA, halfB}},
        {{a}, {halfA}},
        {{a}, {halfA, halfA}},
        {{a, b}, {halfA}},
        {{a, b, b}, {halfA, halfB, b, {0, 0}}},
    };
    for (const auto& each : cases) {
        Block block(each.in, each.out.size());
        ASSERT_EQ(run(block), kResultOk);
        EXPECT_EQ(block.out, each.out) << each.in.size() << " to " << each.out.size();
        EXPECT_EQ(block.data.outputs->silenceFlags, 0U);
    }
    // In place, and crossed over.
    Block block({a, b}, 2);
    float* crossed[] = {block.in[1].data(), block.in[0].data()};
    block.data.outputs->channelBuffers32 = crossed;
    run(block);
    EXPECT_EQ(block.in, (Channels{halfB, halfA}));
}

TEST_F(Audio, MissingBusesAndChannelsAreNoTrouble) {
    Block block({{1, 2}, {3, 4}}, 2);
    float* nothing[] = {nullptr, nullptr};
    block.data.inputs->channelBuffers32 = nothing;
    run(block);
    EXPECT_EQ(block.out, (Channels{{0, 0}, {0, 0}}));
    for (AudioBusBuffers* bus : {block.data.inputs, block.data.outputs}) {
        bus->channelBuffers32 = nullptr;
        for (const int32 channels : {2, std::numeric_limits<int32>::max(), -1, 0}) {
            bus->numChannels = channels;
            EXPECT_EQ(run(block), kResultOk);
        }
    }
    // Parameters only: nothing to hear.
    const int before = plugin().blocks;
    Block flush({{1, 2}, {3, 4}}, 2);
    for (int32 ProcessData::*count :
         {&ProcessData::numInputs, &ProcessData::numOutputs, &ProcessData::numSamples}) {
        const int32 was = std::exchange(flush.data.*count, -5);
        EXPECT_EQ(run(flush), kResultOk);
        flush.data.*count = was;
    }
    flush.data.symbolicSampleSize = kSample64;
    EXPECT_NE(run(flush), kResultOk);
    EXPECT_EQ(flush.out[0][0], -9.0F);
    EXPECT_EQ(plugin().blocks, before);
}

TEST_F(Audio, BusesTakeMonoAndStereoAndNothingElse) {
    SpeakerArrangement mono = SpeakerArr::kMono;
    SpeakerArrangement wide = SpeakerArr::k51;
    SpeakerArrangement two[] = {SpeakerArr::kStereo, SpeakerArr::kStereo};
    IAudioProcessor& processor = *effect->processor;
    EXPECT_EQ(processor.setBusArrangements(&mono, 1, two, 1), kResultTrue);
    EXPECT_EQ(processor.setBusArrangements(two, 1, &wide, 1), kResultFalse);
    EXPECT_EQ(processor.setBusArrangements(two, 2, two, 1), kResultFalse);
    EXPECT_EQ(processor.setBusArrangements(nullptr, 1, two, 1), kResultFalse);
    BusInfo info;
    EXPECT_EQ(effect->component->getBusInfo(kAudio, kInput, 0, info), kResultOk);
    EXPECT_EQ(info.channelCount, 1) << "what was refused changed nothing";
    EXPECT_EQ(text(info.name), "Stereo In");
    for (const int32 index : {-1, 1, 1 << 30}) {
        EXPECT_NE(effect->component->getBusInfo(kAudio, kInput, index, info), kResultOk);
        EXPECT_NE(effect->component->activateBus(kAudio, kOutput, index, 1), kResultOk);
        EXPECT_NE(processor.getBusArrangement(kOutput, index, wide), kResultOk);
    }
}

TEST_F(Audio, SidechainIsABusOfItsOwn) {
    module().records[0].hasSidechain = true;
    create();
    effect->prepare(48000, 64);
    ASSERT_EQ(effect->component->getBusCount(kAudio, kInput), 2);
    Block block({{2, 4}, {6, 8}}, 2);
    Block side({{100, 200}}, 0); // a mono one
    AudioBusBuffers buses[] = {*block.data.inputs, *side.data.inputs};
    block.data.inputs = buses;
    run(block);
    EXPECT_FALSE(plugin().block.hasSidechain) << "the host brought one bus";
    block.data.numInputs = 2;
    run(block);
    EXPECT_EQ(block.out, (Channels{{101, 202}, {103, 204}}));
}

TEST_F(Audio, BlocksLongerThanAnnouncedAreAnnounced) {
    EXPECT_EQ(plugin().blockSizes.back(), 64);
    Block longer({std::vector<float>(1000, 1.0F), std::vector<float>(1000, 1.0F)}, 2);
    run(longer);
    EXPECT_EQ(plugin().blockSizes.back(), 1000);
    EXPECT_EQ(longer.out[1][999], 0.5F);
    EXPECT_NE(setUp(kSample32, 0, 48000), kResultOk);
    EXPECT_NE(setUp(kSample32, 1 << 30, 48000), kResultOk);
    EXPECT_NE(setUp(kSample32, 32, std::nan("")), kResultOk);
    EXPECT_NE(setUp(kSample64, 32, 48000), kResultOk);
    EXPECT_EQ(plugin().blockSizes.back(), 1000);
}

TEST_F(Audio, HostThatCallsBackInFromTheBlockDoesNotHang) {
    Block inner({{8, 8}, {8, 8}}, 2);
    plugin().duringProcess = [&] {
        plugin().duringProcess = nullptr;
        run(inner);
        setUp(kSample32, 32, 44100);
    };
    Block outer({{2, 2}, {2, 2}}, 2);
    run(outer);
    EXPECT_EQ(inner.out, inner.in) << "a block inside a block passes unseen";
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
}

TEST_F(Audio, LastPointWinsAndGesturesHold) {
    const auto gainAfter = [this](std::vector<Queue> queues) {
        EXPECT_EQ(change(std::move(queues)), kResultOk);
        return plugin().parameters[0]->getNormalizedValue();
    };
    EXPECT_EQ(gainAfter({Queue(0, {{0, 0.1}, {10, 0.9}, {20, 0.25}})}), 0.25F);
    EXPECT_EQ(gainAfter({Queue(0, {}), Queue(77, {{0, 1.0}}), Queue(0, {{0, std::nan("")}})}),
              0.25F);
    EXPECT_EQ(gainAfter({Queue(0, {{0, 7.0}})}), 1.0F);
    plugin().host->beginEdit(0);
    effect->controller->setParamNormalized(0, 0.5);
    EXPECT_EQ(gainAfter({Queue(0, {{0, 0.5}})}), 1.0F) << "the user holds it";
    plugin().host->endEdit(0);
    EXPECT_EQ(gainAfter({Queue(0, {{0, 0.5}})}), 0.5F);
    EXPECT_EQ(effect->controller->getParamNormalized(0), 0.5);
}

TEST_F(Audio, BypassResetsWhenItGoesOffAndIsNoMore) {
    Block block({{2, 2}, {2, 2}}, 2);
    const int before = plugin().resets;
    for (const double value : {0.0, 1.0, 1.0, 0.0, 0.0}) {
        Changes changes({Queue(kBypass, {{0, value}})});
        block.data.inputParameterChanges = &changes;
        run(block);
        EXPECT_EQ(block.out[0][0], 1.0F) << "the plug-in goes on";
    }
    EXPECT_EQ(plugin().resets, before + 1);
}

TEST_F(Audio, MidiComesFromControllersAndEvents) {
    struct Events final : HostObject<IEventList> {
        int32 PLUGIN_API getEventCount() override { return static_cast<int32>(list.size()); }
        tresult PLUGIN_API getEvent(int32 index, Event& event) override {
            event = list[static_cast<std::size_t>(index)];
            return kResultOk;
        }
        tresult PLUGIN_API addEvent(Event&) override { return kResultFalse; }
        std::vector<Event> list;
    } events;
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
    const ParamID first = Vardo::Vardo_VST3::kFirstMidiId;
    Changes controllers({Queue(first + 2 * 130 + 7, {{5, 1.0}}),
                         Queue(first + 15 * 130 + 129, {{9, 0.5}}), Queue(first + 128, {{1, 1.0}}),
                         Queue(first + 2080, {{0, 1.0}})});
    Block block({{1}, {1}}, 2);
    block.data.inputParameterChanges = &controllers;
    block.data.inputEvents = &events;
    run(block);
    EXPECT_EQ(plugin().midi(), (std::vector<std::array<int, 4>>{{5, 0xB2, 7, 127},
                                                                {9, 0xEF, 8191 & 0x7F, 8191 >> 7},
                                                                {0, 0, 0, 0},
                                                                {3, 0x91, 60, 127}}));
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
    RunLoop loop;
    hammer(*effect, loop, 1000, 0.5F);
    EXPECT_GT(plugin().blocks, 0);
}

} // namespace
} // namespace vst3_test
