// Blocks of audio from a host's instances to the plug-in: pointers, transport, events, the heap.
#include "Render.h"
#include "AllocationCount.h"
#include "ChannelPointers.h"
#include "EffectFixture.h"

#include <atomic>
#include <cmath>
#include <limits>
#include <numeric>
#include <thread>

namespace {

using namespace Vardo::Aax;
using Samples = std::vector<float>;

class Render : public EffectFixture {
  protected:
    Render() {
        start();
        context.inputs = inputs;
        context.outputs = outputs;
        context.sidechain = &sidechainIndex;
        context.frames = &frames;
        context.sampleRate = &rate;
        context.transport = &node;
        context.wrapper = &wrapper;
        node.transport = &transport;
    }

    StubPlugin::Block run(Algorithm algorithm = Algorithm::stereoToStereo) {
        wrapper = effect.get();
        AlgorithmContext* instances[] = {nullptr, &context};
        renderFunction(algorithm)(instances, instances + 2);
        return module().last == nullptr ? StubPlugin::Block() : plugin().block;
    }

    Samples a = Samples(4, 2.0F);
    Samples b = Samples(4, 4.0F);
    Samples c = Samples(4, 8.0F);
    Samples x = Samples(4, -1.0F);
    Samples y = Samples(4, -1.0F);
    Samples z = Samples(4, -1.0F);
    float* inputs[3] = {a.data(), b.data(), c.data()};
    float* outputs[4] = {x.data(), y.data(), z.data(), z.data()};
    std::int32_t sidechainIndex = 0;
    std::int32_t frames = 4;
    float rate = 48000;
    AAX_IMIDINode node;
    Vardo_AAX_Wrapper* wrapper = nullptr;
    AlgorithmContext context{};
};

// The stub halves one channel after the other: what it does twice shows whose memory it was.
TEST_F(Render, StemsBecomePairsOfTheHostsOwnPointers) {
    EXPECT_EQ(run(Algorithm::monoToMono).inputPairs, 1);
    EXPECT_EQ(x, Samples(4, 1.0F));
    EXPECT_EQ(y, Samples(4, -1.0F)) << "no second channel to touch";
    run(Algorithm::monoToStereo);
    EXPECT_EQ(y, Samples(4, 1.0F)) << "one source feeds both sides";
    run(Algorithm::stereoToStereo);
    EXPECT_EQ(y, Samples(4, 2.0F));
    outputs[0] = a.data();
    run(Algorithm::monoToMono);
    EXPECT_EQ(a, Samples(4, 0.5F)) << "left and right are the same memory, there and back";

    float* host[] = {x.data(), y.data(), z.data()};
    ChannelPointers further(host, 1, 4);
    EXPECT_EQ(std::vector(further.data(), further.data() + 4),
              (std::vector{x.data(), x.data(), y.data(), z.data()}))
        << "further outputs are stereo whatever the stem";
}

TEST_F(Render, SideChainIsOneInputTwice) {
    sidechainIndex = 2;
    EXPECT_FALSE(run().hasSidechain) << "the record takes none";
    record().hasSidechain = true;
    start();
    EXPECT_TRUE(run().hasSidechain);
    EXPECT_EQ(x, Samples(4, 9.0F));
    EXPECT_EQ(y, Samples(4, 10.0F));
    for (const int index : {0, -1, std::numeric_limits<int>::min()}) {
        sidechainIndex = index;
        EXPECT_FALSE(run().hasSidechain) << index;
    }
}

TEST_F(Render, MissingPointersAreSilenceAndUnwritten) {
    inputs[0] = nullptr;
    outputs[1] = nullptr;
    run();
    EXPECT_EQ(x, Samples(4, 0.0F));
    context.inputs = nullptr;
    context.outputs = nullptr;
    context.sampleRate = nullptr;
    context.transport = nullptr;
    run();
    EXPECT_EQ(plugin().blocks, 2) << "an analyser listens also where nobody does";
    node.transport = nullptr;
    context.transport = &node;
    EXPECT_EQ(run().tempo, 10.0F);

    for (const int count : {0, -1}) {
        frames = count;
        run();
    }
    context.frames = nullptr;
    run();
    context.wrapper = nullptr;
    run();
    renderFunction(Algorithm::monoToMono)(nullptr, nullptr);
    EXPECT_EQ(plugin().blocks, 3);
}

TEST_F(Render, LongBlocksComeInPieces) {
    Samples left(2500);
    Samples right(2500, 2.0F);
    std::iota(left.begin(), left.end(), 0.0F);
    inputs[0] = left.data();
    inputs[1] = nullptr;
    outputs[0] = left.data(); // in place
    outputs[1] = right.data();
    frames = 2500;
    transport.location = 1000;
    const auto block = run();
    EXPECT_EQ(plugin().blocks, 3);
    EXPECT_EQ(block.frames, 2500 - 2048);
    EXPECT_EQ(block.samplePosition, 1000.0 + 2048.0);
    for (std::size_t i = 0; i < left.size(); ++i)
        ASSERT_EQ(left[i], 0.5F * static_cast<float>(i));
    EXPECT_EQ(right, Samples(2500, 0.0F));
}

TEST_F(Render, AudioPassesWhereThePluginFails) {
    plugin().duringProcess = [] { throw 1; };
    x = a;
    outputs[0] = a.data();
    run(Algorithm::monoToStereo);
    EXPECT_EQ(y, a);
    module().createsNothing = true;
    start();
    run();
    EXPECT_EQ(y, b);
}

TEST_F(Render, TransportTakesOnlyWhatMakesSense) {
    transport.tempo = 90;
    transport.location = 96000;
    auto block = run();
    EXPECT_EQ(block.tempo, 90.0F);
    EXPECT_TRUE(block.playing);
    EXPECT_EQ(block.samplePosition, 96000.0);
    EXPECT_DOUBLE_EQ(block.ppqPosition, 3.0) << "two seconds of one and a half beats";
    transport.playing = false;
    EXPECT_FALSE(run().playing);
    transport.location = -500;
    EXPECT_EQ(run().samplePosition, 0.0);
    transport.location = 96000;
    for (const double tempo : {0.0, -120.0, 1e-300, 1e300, std::nan(""), double{INFINITY}}) {
        transport.tempo = tempo;
        block = run();
        EXPECT_EQ(block.tempo, 10.0F) << tempo;
        EXPECT_DOUBLE_EQ(block.ppqPosition, 1.0 / 3.0) << tempo;
    }
    for (const float bad : {0.0F, -1.0F, std::nanf(""), INFINITY}) {
        rate = bad;
        EXPECT_DOUBLE_EQ(run().ppqPosition, 1.0 / 3.0) << "the controller's rate";
    }
    transport.result = -1;
    transport.playing = true;
    block = run();
    EXPECT_FALSE(block.playing);
    EXPECT_EQ(block.samplePosition, 0.0);
}

TEST_F(Render, EventsComeBeforeTheBlockAndBounded) {
    std::vector<AAX_CMidiPacket> packets(5000, AAX_CMidiPacket{7, 3, {0x93, 60, 127, 0}, 0});
    packets[1].mTimestamp = 0xFFFFFFFF;
    AAX_CMidiStream stream{2, packets.data()};
    node.stream = &stream;
    context.midiIn = &node;
    run();
    EXPECT_TRUE(plugin().events.empty()) << "an effect does not listen";

    record().category = Vardo::kCategoryInstrument;
    start();
    run();
    EXPECT_EQ(plugin().midi(),
              (std::vector<std::array<int, 4>>{{7, 0x93, 60, 127},
                                               {std::numeric_limits<int>::max(), 0x93, 60, 127}}));
    stream.mBufferSize = 5000;
    run();
    EXPECT_EQ(plugin().events.size(), 1024U) << "what has room without the heap";
    plugin().events.clear();
    stream = {3, nullptr};
    run();
    context.midiIn = nullptr;
    run();
    EXPECT_TRUE(plugin().events.empty());
}

TEST_F(Render, TakesNothingFromTheHeap) {
    if (!allocationsAreCounted()) GTEST_SKIP() << "a sanitizer brings its own heap";
    record().category = Vardo::kCategorySynth;
    record().hasSidechain = true;
    sidechainIndex = 2;
    std::vector<AAX_CMidiPacket> packets(10);
    AAX_CMidiStream stream{10, packets.data()};
    node.stream = &stream;
    context.midiIn = &node;
    start();
    plugin().events.reserve(16);
    const std::size_t before = allocationsOfThisThread();
    for (int i = 0; i < 50; ++i) {
        transport.location += frames;
        run();
        effect->UpdateParameterNormalizedValue("Gain", 0.01 * i, AAX_eUpdateSource_Unspecified);
    }
    EXPECT_EQ(allocationsOfThisThread() - before, 0U);
}

// For the thread sanitizer.
TEST_F(Render, ConcurrentWithTheMainThread) {
    std::atomic<bool> over{false};
    std::thread audio([&] {
        while (!over)
            run();
    });
    std::uint32_t size = 0;
    for (int i = 0; i < 2000 || plugin().blocks < 100; ++i) {
        effect->UpdateParameterNormalizedValue("Gain", 1e-4 * i, AAX_eUpdateSource_Unspecified);
        plugin().host->automate(0, 0.5F);
        EXPECT_EQ(effect->GetChunkSize(Vardo::Aax::kStateChunk, &size), AAX_SUCCESS);
        effect->idle();
    }
    over = true;
    audio.join();
}

} // namespace
