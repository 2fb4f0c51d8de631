// How an effect comes to be: its AEffect, shells, side chains, instruments, failures.
#include "AdapterFixture.h"

namespace {

using namespace vst2;
class Construction : public AdapterFixture {};

TEST_F(Construction, DescribesThePlugin) {
    module().latency = 77;
    module().records[0].programs = 3;
    host.knowsShells = true; // and this is none
    const Effect effect(create());
    ASSERT_NE(effect.get(), nullptr);
    EXPECT_EQ(effect->uniqueID, fourLetters("Stb1"));
    EXPECT_EQ(effect->numParams, 3) << "the parameter that is not automatable is not the host's";
    EXPECT_EQ(effect->numPrograms, 3);
    EXPECT_EQ(effect->initialDelay, 77);
    EXPECT_EQ(effect->flags, effFlagsCanReplacing | effFlagsProgramChunks);
    EXPECT_EQ(plugin().sampleRate, 44100.0);
    EXPECT_EQ(plugin().blockSizes, std::vector<int>{1024});
    EXPECT_EQ(plugin().parameters[1]->getHostIndex(), -1);
    EXPECT_EQ(plugin().parameters[2]->getHostIndex(), 1);
}

TEST_F(Construction, GivesNothingWithoutAHostOrMemory) {
    EXPECT_EQ(Vardo::createEffect(nullptr), nullptr);
    module().createThrows = true;
    EXPECT_EQ(create(), nullptr);
    host.version = 0;
    module().createdIds.clear();
    EXPECT_EQ(create(), nullptr);
    EXPECT_TRUE(module().createdIds.empty());
}

TEST_F(Construction, LeavesAnEmptyEffectWhereThePluginCannotBeMade) {
    module().createsNothing = true;
    for (const bool noRecords : {false, true}) {
        if (noRecords) module().records.clear();
        const Effect effect(create());
        ASSERT_NE(effect.get(), nullptr);
        EXPECT_EQ(effect->numParams, 0);
        void* data = &host;
        EXPECT_EQ(effect.ask(effGetChunk, 0, 0, &data), 0);
        EXPECT_EQ(data, nullptr);
        char bytes[4] = {};
        EXPECT_EQ(effect.ask(effSetChunk, 0, 4, bytes), 0);
    }
}

TEST_F(Construction, ShellListsItsPluginsAndMakesTheOneTheHostWants) {
    Vardo::PluginDescription second = StubModule::firstRecord();
    second.uniqueId = Vardo::fourCharacterCode("Stb2");
    second.effectName = "Stub Two";
    second.category = Vardo::kCategorySynth;
    module().records.push_back(second);
    host.currentId = fourLetters("Stb2");
    EXPECT_EQ(Effect(create())->uniqueID, fourLetters("Stb1")) << "a host that knows no shells";

    host.knowsShells = true;
    const Effect made(create());
    EXPECT_EQ(made->uniqueID, fourLetters("Stb2"));
    EXPECT_EQ(made.text(effGetEffectName), "Stub Two");
    EXPECT_EQ(made->flags & effFlagsIsSynth, 0) << "not in a shell";
    host.currentId = 0;
    const Effect shell(create());
    EXPECT_EQ(shell->uniqueID, 0);
    EXPECT_EQ(shell.ask(effGetPlugCategory), kPlugCategShell);
    char name[64];
    for (const std::int32_t id : {fourLetters("Stb1"), fourLetters("Stb2"), 0, fourLetters("Stb1")})
        EXPECT_EQ(shell.ask(effShellGetNextPlugin, 0, 0, name), id);
    EXPECT_STREQ(name, "Stub One");
}

TEST_F(Construction, SidechainAddsAPairButInOneOldHost) {
    module().records[0].hasSidechain = true;
    const struct {
        const char* product;
        std::int32_t version;
        int inputs;
    } hosts[] = {{"Fake Host", 1, 4}, {"cubase", 6999, 2}, {"cubase", 7000, 4}, {"Cubase", 1, 4}};
    for (const auto& known : hosts) {
        host.product = known.product;
        host.vendorVersion = known.version;
        EXPECT_EQ(Effect(create())->numInputs, known.inputs)
            << known.product << ' ' << known.version;
    }
}

TEST_F(Construction, InstrumentsAskForEvents) {
    const struct {
        int category;
        bool synth;
        int answer;
    } kinds[] = {{1000, false, 0}, {1001, false, 1}, {1002, true, 1}};
    for (const auto& kind : kinds) {
        SCOPED_TRACE(kind.category);
        module().records[0].category = kind.category;
        const Effect effect(create());
        const auto can = [&](const char* text) {
            return effect.ask(effCanDo, 0, 0, const_cast<char*>(text));
        };
        EXPECT_EQ(effect.ask(effGetPlugCategory), kind.synth ? 2 : 0);
        EXPECT_EQ(can("receiveVstMidiEvent"), kind.answer);
        EXPECT_EQ(can("bypass"), 1);
        for (const char* text : {"", "receiveVstMidiEvents", "offline"})
            EXPECT_EQ(can(text), 0) << text;
        host.forget();
        effect.ask(effMainsChanged, 0, 1);
        EXPECT_EQ(host.count(audioMasterWantMidi), kind.answer);
    }
}

// A plug-in that talks while it goes, to a host that calls back in: the effect has gone deaf.
TEST_F(Construction, PluginGoesWithTheEffect) {
    Effect effect(create());
    host.onCall = [](AEffect* caller, std::int32_t) {
        EXPECT_EQ(caller->dispatcher(caller, effGetVstVersion, 0, 0, nullptr, 0), 0);
        caller->setParameter(caller, 0, 1.0F);
    };
    plugin().duringDestruction = [this] { plugin().host->hostIdle(); };
    effect.close();
    EXPECT_EQ(module().last, nullptr);
    EXPECT_EQ(host.count(audioMasterIdle), 1);
}

} // namespace
