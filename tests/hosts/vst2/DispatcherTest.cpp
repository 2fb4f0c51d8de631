// What the host asks on its main thread: texts, parameters, state, pins, the editor, odd calls.
#include "AdapterFixture.h"
#include "Text.h"
#include "frame/IdleList.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <thread>

namespace {

using namespace vst2;
class Dispatcher : public AdapterFixture {
  protected:
    Effect effect{create()};
};

TEST(Text, IsCutToTheRoomAndAlwaysEnds) {
    const std::pair<const char*, const char*> cases[] = {
        {"1234567", "1234567"}, {"12345678", "1234567"}, {"123456\u00b5", "123456"}, {nullptr, ""}};
    for (const auto& [source, cut] : cases) {
        char text[8];
        copyText(text, source, sizeof text);
        EXPECT_STREQ(text, cut);
    }
}

TEST_F(Dispatcher, TextsFitTheHostsMemory) {
    EXPECT_EQ(effect.text(effGetParamLabel, 0), "%");
    EXPECT_EQ(effect.text(effGetParamName, 1), "A name that is much long");
    EXPECT_EQ(effect.text(effGetParamDisplay, 0).substr(0, 2), "50");
    for (const std::int32_t index : {-1, 3, std::numeric_limits<std::int32_t>::max()})
        for (const std::int32_t opcode : {effGetParamName, effGetParamLabel, effGetParamDisplay})
            EXPECT_EQ(effect.text(opcode, index), "") << opcode << ' ' << index;
    module().records[0].vendorName = std::string(100, 'v');
    EXPECT_EQ(Effect(create()).text(effGetVendorString), std::string(63, 'v'));
}

TEST_F(Dispatcher, ParametersGoByTheHostsIndex) {
    AEffect* raw = effect.get();
    raw->setParameter(raw, 1, 0.25F);
    EXPECT_EQ(plugin().parameters[2]->getValue(), 250.0F);
    EXPECT_EQ(raw->getParameter(raw, 1), 0.25F);
    raw->setParameter(raw, 2, 7.0F);
    EXPECT_EQ(raw->getParameter(raw, 2), 1.0F);
    for (const float bad : {std::nanf(""), INFINITY, -INFINITY})
        raw->setParameter(raw, 1, bad);
    EXPECT_EQ(raw->getParameter(raw, 1), 0.25F) << "what is no number changes nothing";
    raw->setParameter(raw, -1, 0.5F);
    raw->setParameter(raw, 3, 0.5F);
    EXPECT_EQ(plugin().parameters[1]->getValue(), 0.0F) << "the hidden one is out of reach";

    char typed[] = "750";
    EXPECT_EQ(effect.ask(effString2Parameter, 1), 1) << "a question only";
    EXPECT_EQ(raw->getParameter(raw, 1), 0.25F);
    EXPECT_EQ(effect.ask(effString2Parameter, 1, 0, typed), 1);
    EXPECT_EQ(raw->getParameter(raw, 1), 0.75F);

    VstParameterProperties properties;
    std::memset(&properties, '#', sizeof properties);
    EXPECT_EQ(effect.ask(effGetParameterProperties, 1, 0, &properties), 1);
    EXPECT_EQ(properties.displayIndex, 1);
    EXPECT_STREQ(properties.shortLabel, "A name ");
    EXPECT_EQ(effect.ask(effCanBeAutomated, 2), 1);
    for (const std::int32_t index : {-1, 3}) {
        EXPECT_EQ(effect.ask(effCanBeAutomated, index), 0);
        EXPECT_EQ(effect.ask(effString2Parameter, index, 0, typed), 0);
        EXPECT_EQ(effect.ask(effGetParameterProperties, index, 0, &properties), 0);
    }
}

TEST_F(Dispatcher, StateIsThePluginsChunk) {
    void* data = nullptr;
    ASSERT_EQ(effect.ask(effGetChunk, 0, 0, &data), 4);
    EXPECT_EQ(std::memcmp(data, "stub", 4), 0);
    char bytes[] = "new state";
    EXPECT_EQ(effect.ask(effSetChunk, 1, 9, bytes), 9);
    EXPECT_EQ(std::string(plugin().chunk.begin(), plugin().chunk.end()), "new state");
    for (const std::intptr_t size : {std::intptr_t{0}, std::intptr_t{-5}, std::intptr_t{1} << 40})
        EXPECT_EQ(effect.ask(effSetChunk, 0, size, bytes), 0);
    EXPECT_EQ(effect.ask(effSetChunk, 0, 9, nullptr), 0);
    EXPECT_EQ(plugin().chunk.size(), 9U);
}

TEST_F(Dispatcher, PinsAreNamedPairs) {
    VstPinProperties pin;
    std::memset(&pin, '#', sizeof pin);
    EXPECT_EQ(effect.ask(effGetInputProperties, 1, 0, &pin), 1);
    EXPECT_EQ(pin.flags, kVstPinIsActive | kVstPinIsStereo);
    EXPECT_EQ(pin.arrangementType, kSpeakerArrStereo);
    EXPECT_STREQ(pin.label, "");
    EXPECT_EQ(effect.ask(effGetOutputProperties, 0, 0, &pin), 1);
    EXPECT_EQ(std::string(pin.label), std::string(63, 'x')) << "the plug-in's own name, cut";
    EXPECT_EQ(effect.ask(effGetOutputProperties, 1, 0, &pin), 1);
    EXPECT_STREQ(pin.label, "Stub One");
    for (const std::int32_t index : {-1, 2}) {
        EXPECT_EQ(effect.ask(effGetInputProperties, index, 0, &pin), 0);
        EXPECT_EQ(effect.ask(effGetOutputProperties, index, 0, &pin), 0);
    }
}

TEST_F(Dispatcher, SetUpReachesThePluginUnlessItIsNonsense) {
    effect.ask(effSetSampleRate, 0, 0, nullptr, 96000.0F);
    for (const float bad : {0.0F, -1.0F, std::nanf(""), INFINITY})
        effect.ask(effSetSampleRate, 0, 0, nullptr, bad);
    EXPECT_EQ(plugin().sampleRate, 96000.0);
    effect.ask(effSetBlockSize, 0, 64);
    for (const std::intptr_t bad : {std::intptr_t{0}, std::intptr_t{-64}, std::intptr_t{1} << 30})
        effect.ask(effSetBlockSize, 0, bad);
    EXPECT_EQ(plugin().blockSizes, (std::vector<int>{1024, 64}));

    effect.ask(effMainsChanged, 0, 0);
    effect.ask(effMainsChanged, 0, 1);
    EXPECT_EQ(plugin().resets, 2);
    EXPECT_EQ(effect.ask(effSetBypass, 0, 1), 1);
    EXPECT_EQ(effect.ask(effSetBypass, 0, 0), 1);
    EXPECT_EQ(plugin().resets, 4);
    EXPECT_EQ(plugin().bypasses, 0) << "the audio is never switched off";
}

// The plug-in's own changes get to the host where the host can be called back, and nowhere else.
TEST_F(Dispatcher, DeliversThePluginsChangesFromMainThreadCalls) {
    plugin().duringIdle = [this] {
        plugin().host->refreshParameters();
        void* data = nullptr; // a host that reads the state when it hears of it
        EXPECT_EQ(effect.ask(effGetChunk, 0, 0, &data), 4);
    };
    void* data = nullptr;
    char bytes[] = "stub";
    effect.ask(effEditIdle);
    EXPECT_EQ(plugin().idles, 1);
    effect.ask(effIdle);
    EXPECT_EQ(plugin().idles, 2);
    effect.ask(effGetChunk, 0, 0, &data);
    EXPECT_EQ(plugin().idles, 3);
    effect.ask(effSetChunk, 0, 4, bytes);
    EXPECT_EQ(plugin().idles, 4);
    effect.ask(effMainsChanged, 0, 1);
    EXPECT_EQ(plugin().idles, 5);

    effect->setParameter(effect.get(), 0, 0.5F);
    effect.run({{1.0F}, {1.0F}}, 2);
    std::thread([&] {
        effect.ask(effGetChunk, 0, 0, &data);
        effect.ask(effMainsChanged, 0, 1);
    }).join();
    EXPECT_EQ(plugin().idles, 5);
    EXPECT_EQ(host.count(audioMasterUpdateDisplay), 5);
}

TEST_F(Dispatcher, DrivesTheEditor) {
    module().hasEditor = true;
    Effect shown(create());
    const StubEditor& editor = *plugin().editor;
    EXPECT_NE(shown->flags & effFlagsHasEditor, 0);
    ERect* rect = nullptr;
    EXPECT_EQ(shown.ask(effEditGetRect, 0, 0, &rect), 1);
    EXPECT_EQ(rect->right, 640);
    EXPECT_EQ(rect->bottom, 360);
    EXPECT_EQ(shown.ask(effEditOpen), 0) << "no parent, no window";
    EXPECT_EQ(shown.ask(effEditOpen, 0, 0, &host), 1);
    EXPECT_EQ(editor.parent, &host);
    EXPECT_EQ(shown.ask(effEditKeyDown, 'a', 7, nullptr, 3.0F), 1);
    EXPECT_EQ(editor.key.character, 'a');
    EXPECT_EQ(editor.key.virtualKey, 7);
    EXPECT_EQ(editor.key.modifiers, 3);
    const auto vendor = [&](std::int32_t what, std::int32_t which, float distance) {
        return shown.ask(effVendorSpecific, what, which, nullptr, distance);
    };
    const std::int32_t wheel = fourLetters("Whee");
    EXPECT_EQ(vendor(fourLetters("stCA"), wheel, 2), 1);
    EXPECT_EQ(editor.wheel, 2);
    EXPECT_EQ(vendor(fourLetters("stCa"), wheel, 3), 1);
    EXPECT_EQ(vendor(fourLetters("stca"), wheel, 4), 0);
    EXPECT_EQ(vendor(fourLetters("stCA"), fourLetters("whee"), 4), 0);
    vendor(fourLetters("stCA"), wheel, std::nanf(""));
    EXPECT_EQ(editor.wheel, 3);
    Vardo::IdleList::instance().add(plugin().editor.get());
    shown.ask(effEditIdle);
    Vardo::IdleList::instance().remove(plugin().editor.get());
    EXPECT_EQ(editor.idles, 1);
    EXPECT_EQ(shown.ask(effEditOpen, 0, 0, &shown), 1) << "a host that forgets to close";
    EXPECT_EQ(editor.parent, &shown);
    EXPECT_FALSE(editor.openedTwice);
    shown.ask(effEditClose);
    EXPECT_EQ(editor.parent, nullptr);

    ERect* none = rect;
    EXPECT_EQ(effect.ask(effEditGetRect, 0, 0, &none), 0) << "without an editor";
    EXPECT_EQ(none, nullptr);
}

// Hosts' mistakes: every opcode known or not, without its argument and with odd numbers.
TEST_F(Dispatcher, SmokeEveryOpcodeWithOddArguments) {
    const std::int32_t most = std::numeric_limits<std::int32_t>::max();
    for (const bool withPlugin : {true, false}) {
        module().createsNothing = !withPlugin;
        const Effect target(create());
        // Large enough for all that an opcode may write.
        alignas(16) char memory[1024];
        for (std::int32_t opcode = -2; opcode <= 100; ++opcode) {
            if (opcode == effClose) continue;
            // Where the value is an address, or the size of what ptr points at, only 0 can be
            // tried.
            const bool plain = opcode != effSetSpeakerArrangement &&
                               opcode != effGetSpeakerArrangement && opcode != effSetChunk;
            for (const std::int32_t index : {0, 1, -1, most, std::int32_t{-most - 1}})
                for (const float opt : {0.0F, 1.0F, -1e30F, std::nanf("")})
                    for (const std::intptr_t value : {0, -1, most}) {
                        if (!plain && value != 0) continue;
                        target.ask(opcode, index, value, nullptr, opt);
                        std::memset(memory, 0, sizeof memory);
                        target.ask(opcode, index, value, memory, opt);
                    }
        }
        EXPECT_EQ(target.ask(9999, 0, 0, memory), 0);
        EXPECT_EQ(target.ask(effGetVstVersion), 2400);
    }
    AEffect* raw = effect.get();
    EXPECT_EQ(raw->dispatcher(nullptr, effOpen, 0, 0, nullptr, 0), 0);
    raw->setParameter(nullptr, 0, 0);
    EXPECT_EQ(raw->getParameter(nullptr, 0), 0.0F);
    raw->processReplacing(nullptr, nullptr, nullptr, 16);
    raw->process(nullptr, nullptr, nullptr, 16);
}

TEST_F(Dispatcher, NoExceptionReachesTheHost) {
    struct Thrower : Vardo::ParameterChangeListener {
        void parameterChanged(Vardo::IPluginParameter*) override { throw 1; }
    } thrower;
    plugin().parameters[0]->setImmediateListener(&thrower);
    effect->setParameter(effect.get(), 0, 0.9F);
    plugin().duringIdle = [] { throw 1; };
    void* data = nullptr;
    EXPECT_EQ(effect.ask(effGetChunk, 0, 0, &data), 0);
    EXPECT_EQ(effect.ask(effIdle), 0);
}

} // namespace
