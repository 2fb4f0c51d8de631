// What the host asks on its main thread: texts, parameters, state, pins, odd calls.
#include "AdapterFixture.h"
#include "Text.h"

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
    char text[8];
    copyText(text, "1234567", sizeof text);
    EXPECT_STREQ(text, "1234567");
    copyText(text, "12345678", sizeof text);
    EXPECT_STREQ(text, "1234567");
    copyText(text, "123456\xC2\xB5s", sizeof text); // a micro sign across the border
    EXPECT_STREQ(text, "123456");
    copyText(text, "12345\xC2\xB5s", sizeof text);
    EXPECT_STREQ(text, "12345\xC2\xB5");
    copyText(text, nullptr, sizeof text);
    EXPECT_STREQ(text, "");
    copyText(nullptr, "a", sizeof text);
}

TEST_F(Dispatcher, TextsFitTheHostsMemory) {
    EXPECT_EQ(effect.text(effGetParamName, 0), "Gain");
    EXPECT_EQ(effect.text(effGetParamLabel, 0), "%");
    EXPECT_EQ(effect.text(effGetParamLabel, 1), "ms");
    EXPECT_EQ(effect.text(effGetParamName, 1), "A name that is much long");
    EXPECT_EQ(effect.text(effGetParamName, 1).size(), 24U);
    EXPECT_EQ(effect.text(effGetParamName, 2), "Last");
    EXPECT_EQ(effect.text(effGetParamDisplay, 0).substr(0, 2), "50");
    for (const std::int32_t index : {-1, 3, std::numeric_limits<std::int32_t>::max()})
        for (const std::int32_t opcode : {effGetParamName, effGetParamLabel, effGetParamDisplay})
            EXPECT_EQ(effect.text(opcode, index), "") << opcode << ' ' << index;
    EXPECT_EQ(effect.text(effGetEffectName), "Stub One");
    EXPECT_EQ(effect.text(effGetProductString), "Stub Line");
    EXPECT_EQ(effect.text(effGetVendorString), "Stub Works");
    EXPECT_EQ(effect.ask(effGetVendorVersion), 0x10203);
    EXPECT_EQ(effect.text(effGetProgramName), "");

    module().records[0].vendorName = std::string(100, 'v');
    Effect talkative(create());
    EXPECT_EQ(talkative.text(effGetVendorString), std::string(63, 'v'));
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

    EXPECT_EQ(effect.ask(effCanBeAutomated, 2), 1);
    EXPECT_EQ(effect.ask(effCanBeAutomated, 3), 0);
    EXPECT_EQ(effect.ask(effCanBeAutomated, -1), 0);

    char typed[] = "750";
    EXPECT_EQ(effect.ask(effString2Parameter, 1, 0, nullptr), 1);
    EXPECT_EQ(raw->getParameter(raw, 1), 0.25F);
    EXPECT_EQ(effect.ask(effString2Parameter, 1, 0, typed), 1);
    EXPECT_EQ(raw->getParameter(raw, 1), 0.75F);
    EXPECT_EQ(effect.ask(effString2Parameter, 3, 0, typed), 0);
    EXPECT_EQ(effect.ask(effString2Parameter, 3, 0, nullptr), 0);

    VstParameterProperties properties;
    std::memset(&properties, '#', sizeof properties);
    EXPECT_EQ(effect.ask(effGetParameterProperties, 1, 0, &properties), 1);
    EXPECT_EQ(properties.displayIndex, 1);
    EXPECT_EQ(properties.flags, 0);
    EXPECT_STREQ(properties.label, "A name that is much longer than any host of old expected");
    EXPECT_STREQ(properties.shortLabel, "A name ");
    EXPECT_EQ(effect.ask(effGetParameterProperties, 3, 0, &properties), 0);
}

TEST_F(Dispatcher, StateIsThePluginsChunk) {
    void* data = nullptr;
    ASSERT_EQ(effect.ask(effGetChunk, 0, 0, &data), 4);
    EXPECT_EQ(std::memcmp(data, "stub", 4), 0);
    char bytes[] = "new state";
    EXPECT_EQ(effect.ask(effSetChunk, 1, 9, bytes), 9);
    EXPECT_EQ(std::string(plugin().chunk.begin(), plugin().chunk.end()), "new state");
    EXPECT_EQ(effect.ask(effSetChunk, 0, 0, bytes), 0);
    EXPECT_EQ(effect.ask(effSetChunk, 0, -5, bytes), 0);
    EXPECT_EQ(effect.ask(effSetChunk, 0, std::intptr_t{1} << 40, bytes), 0);
    EXPECT_EQ(effect.ask(effSetChunk, 0, 9, nullptr), 0);
    EXPECT_EQ(plugin().chunk.size(), 9U);
}

TEST_F(Dispatcher, ProgramsPinsAndPlainAnswers) {
    EXPECT_EQ(effect.ask(effGetProgram), 0);
    effect.ask(effSetProgram, 0, 5);
    effect.ask(effSetProgram, 0, -1);
    EXPECT_EQ(effect.ask(effGetProgram), 0) << "there is one program";

    VstPinProperties pin;
    std::memset(&pin, '#', sizeof pin);
    EXPECT_EQ(effect.ask(effGetInputProperties, 1, 0, &pin), 1);
    EXPECT_EQ(pin.flags, kVstPinIsActive | kVstPinIsStereo);
    EXPECT_EQ(pin.arrangementType, kSpeakerArrStereo);
    EXPECT_STREQ(pin.label, "");
    EXPECT_EQ(effect.ask(effGetInputProperties, 2, 0, &pin), 0);
    EXPECT_EQ(effect.ask(effGetInputProperties, -1, 0, &pin), 0);
    EXPECT_EQ(effect.ask(effGetOutputProperties, 0, 0, &pin), 1);
    EXPECT_EQ(std::string(pin.label), std::string(63, 'x')) << "the plug-in's own name, cut";
    EXPECT_EQ(effect.ask(effGetOutputProperties, 1, 0, &pin), 1);
    EXPECT_STREQ(pin.label, "Stub One");
    EXPECT_EQ(effect.ask(effGetOutputProperties, 2, 0, &pin), 0);

    EXPECT_EQ(effect.ask(effGetTailSize), 2400);
    EXPECT_EQ(effect.ask(effGetVstVersion), 2400);
    EXPECT_EQ(effect.ask(effGetCurrentMidiProgram), -1);
    EXPECT_EQ(effect.ask(effSetProcessPrecision, 0, 1), 0);

    EXPECT_EQ(effect.ask(effVendorSpecific, fourLetters("stCA"), fourLetters("Whee")), 1);
    EXPECT_EQ(effect.ask(effVendorSpecific, fourLetters("stCa"), fourLetters("Whee")), 1);
    EXPECT_EQ(effect.ask(effVendorSpecific, fourLetters("stCB"), fourLetters("Whee")), 0);
    EXPECT_EQ(effect.ask(effVendorSpecific, fourLetters("stca"), fourLetters("Whee")), 0);
    EXPECT_EQ(effect.ask(effVendorSpecific, fourLetters("stCA"), fourLetters("whee")), 0);

    ERect* rect = reinterpret_cast<ERect*>(&pin);
    EXPECT_EQ(effect.ask(effEditGetRect, 0, 0, &rect), 0);
    EXPECT_EQ(rect, nullptr);
    EXPECT_EQ(effect.ask(effEditOpen, 0, 0, &pin), 0);
}

TEST_F(Dispatcher, SetUpReachesThePluginUnlessItIsNonsense) {
    effect.ask(effSetSampleRate, 0, 0, nullptr, 96000.0F);
    EXPECT_EQ(plugin().sampleRate, 96000.0);
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
    const auto idlesOf = [this](auto call) {
        const int before = plugin().idles;
        call();
        return plugin().idles - before;
    };
    void* data = nullptr;
    char bytes[] = "stub";
    EXPECT_EQ(idlesOf([&] { effect.ask(effEditIdle); }), 1);
    EXPECT_EQ(idlesOf([&] { EXPECT_EQ(effect.ask(effIdle), 1); }), 1);
    EXPECT_EQ(idlesOf([&] { effect.ask(effGetChunk, 0, 0, &data); }), 1);
    EXPECT_EQ(idlesOf([&] { effect.ask(effSetChunk, 0, 4, bytes); }), 1);
    EXPECT_EQ(idlesOf([&] { effect.ask(effMainsChanged, 0, 1); }), 1);
    EXPECT_EQ(idlesOf([&] { effect->setParameter(effect.get(), 0, 0.5F); }), 0);
    EXPECT_EQ(idlesOf([&] { effect.run({{1.0F}, {1.0F}}, 2); }), 0);
    EXPECT_EQ(idlesOf([&] {
                  std::thread other([&] {
                      effect.ask(effGetChunk, 0, 0, &data);
                      effect.ask(effMainsChanged, 0, 1);
                  });
                  other.join();
              }),
              0);
    EXPECT_EQ(host.count(audioMasterUpdateDisplay), 5);
    EXPECT_EQ(host.count(audioMasterIOChanged), 5);
    EXPECT_GE(host.count(audioMasterNeedIdle), 1);
}

// Hosts' mistakes: every opcode known or not, without its argument and with odd numbers.
TEST_F(Dispatcher, SmokeEveryOpcodeWithOddArguments) {
    const std::int32_t most = std::numeric_limits<std::int32_t>::max();
    for (const bool withPlugin : {true, false}) {
        module().createsNothing = !withPlugin;
        Effect target(create());
        // Large enough for all that an opcode may write.
        alignas(16) char memory[1024];
        for (std::int32_t opcode = -2; opcode <= 100; ++opcode) {
            if (opcode == effClose) continue;
            for (const std::int32_t index : {0, 1, -1, most, std::int32_t{-most - 1}}) {
                for (const float opt : {0.0F, 1.0F, -1e30F, std::nanf("")}) {
                    target.ask(opcode, index, 0, nullptr, opt);
                    // Where the value is an address, or the size of what ptr points at, only 0 can
                    // be tried.
                    const bool plain = opcode != effSetSpeakerArrangement &&
                                       opcode != effGetSpeakerArrangement && opcode != effSetChunk;
                    for (const std::intptr_t value :
                         {std::intptr_t{0}, std::intptr_t{-1}, std::intptr_t{most}}) {
                        if (!plain && value != 0) continue;
                        target.ask(opcode, index, value, nullptr, opt);
                        std::memset(memory, 0, sizeof memory);
                        target.ask(opcode, index, value, memory, opt);
                    }
                }
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

/// Throws from every operation it can.
class Thrower final : public AudioEffectX {
  public:
    using AudioEffectX::AudioEffectX;
    using AudioEffectX::setEditor;
    void open() override { throw 1; }
    void close() override { throw 1; }
    void processReplacing(float**, float**, std::int32_t) override { throw 1; }
    void processAccumulating(float**, float**, std::int32_t) override { throw 1; }
    void setParameter(std::int32_t, float) override { throw 1; }
    float getParameter(std::int32_t) override { throw 1; }
    void getParameterLabel(std::int32_t, char*) override { throw 1; }
    void getParameterDisplay(std::int32_t, char*) override { throw 1; }
    void getParameterName(std::int32_t, char*) override { throw 1; }
    std::intptr_t getChunk(void**, bool) override { throw 1; }
    std::intptr_t setChunk(const void*, std::intptr_t, bool) override { throw 1; }
    bool getEffectName(char*) override { throw 1; }
    bool getVendorString(char*) override { throw 1; }
    bool getProductString(char*) override { throw 1; }
    std::int32_t getVendorVersion() override { throw 1; }
};

TEST(Border, NoExceptionReachesTheHost) {
    Effect effect((new Thrower(nullptr, 1, 1))->getAeffect());
    EXPECT_EQ(effect.ask(effOpen), 0);
    EXPECT_EQ(effect.ask(effGetVendorVersion), 0);
    EXPECT_EQ(effect.text(effGetParamName), "");
    EXPECT_EQ(effect->getParameter(effect.get(), 0), 0.0F);
    effect->setParameter(effect.get(), 0, 0);
    effect->processReplacing(effect.get(), nullptr, nullptr, 1);
    effect->process(effect.get(), nullptr, nullptr, 1);
}

/// Notes what the dispatcher hands to an editor.
struct NotingEditor final : AEffEditor {
    explicit NotingEditor(std::vector<std::string>& list)
        : notes(list) {}
    ~NotingEditor() override { notes.emplace_back("gone"); }
    bool getRect(ERect** rect) override {
        *rect = &size;
        return true;
    }
    bool open(void* parent) override {
        notes.emplace_back(parent == this ? "open" : "open elsewhere");
        return true;
    }
    void close() override { notes.emplace_back("close"); }
    bool onKeyDown(const VstKeyCode& key) override {
        notes.push_back("key " + std::to_string(key.character) + ' ' + std::to_string(key.virt) +
                        ' ' + std::to_string(key.modifier));
        return true;
    }
    void idle() override { notes.emplace_back("idle"); }

    ERect size{0, 0, 600, 800};
    std::vector<std::string>& notes;
};

TEST(Editor, IsDrivenByTheDispatcher) {
    std::vector<std::string> notes;
    auto* owner = new Thrower(nullptr, 1, 1);
    Effect effect(owner->getAeffect());
    auto editor = std::make_unique<NotingEditor>(notes);
    AEffEditor* raw = editor.get();
    owner->setEditor(std::move(editor));
    EXPECT_NE(effect->flags & effFlagsHasEditor, 0);
    ERect* rect = nullptr;
    EXPECT_EQ(effect.ask(effEditGetRect, 0, 0, &rect), 1);
    EXPECT_EQ(rect->bottom, 600);
    EXPECT_EQ(effect.ask(effEditGetRect), 0);
    EXPECT_EQ(effect.ask(effEditOpen), 0) << "no parent, no window";
    EXPECT_EQ(effect.ask(effEditOpen, 0, 0, static_cast<NotingEditor*>(raw)), 1);
    effect.ask(effEditIdle);
    EXPECT_EQ(effect.ask(effEditKeyDown, 'a', 7, nullptr, 3.0F), 1);
    EXPECT_EQ(effect.ask(effEditKeyUp, 'a', 7, nullptr, std::nanf("")), 0);
    effect.ask(effEditClose);
    effect.close();
    EXPECT_EQ(notes, (std::vector<std::string>{"open", "idle", "key 97 7 3", "close", "gone"}));
}

} // namespace
