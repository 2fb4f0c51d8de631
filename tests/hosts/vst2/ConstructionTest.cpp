// How an effect comes to be: its AEffect, shells, side chains, instruments, failures.
#include "AdapterFixture.h"

#include <cstring>

namespace {

using namespace vst2;
class Construction : public AdapterFixture {};

TEST_F(Construction, DescribesThePlugin) {
    module().latency = 77;
    module().records[0].programs = 3;
    Effect effect(create());
    ASSERT_NE(effect.get(), nullptr);
    EXPECT_EQ(effect->magic, 0x56737450);
    EXPECT_EQ(effect->uniqueID, fourLetters("Stb1"));
    EXPECT_EQ(effect->numInputs, 2);
    EXPECT_EQ(effect->numOutputs, 2);
    EXPECT_EQ(effect->numParams, 3) << "the parameter that is not automatable is not the host's";
    EXPECT_EQ(effect->numPrograms, 3);
    EXPECT_EQ(effect->initialDelay, 77);
    EXPECT_EQ(effect->flags, effFlagsCanReplacing | effFlagsProgramChunks);
    EXPECT_NE(effect->process, nullptr);
    EXPECT_EQ(effect->processDoubleReplacing, nullptr);
    EXPECT_EQ(plugin().sampleRate, 44100.0);
    EXPECT_EQ(plugin().blockSizes, std::vector<int>{1024});
    EXPECT_EQ(effect.ask(effGetPlugCategory), 0);
    EXPECT_EQ(plugin().parameters[0]->getHostIndex(), 0);
    EXPECT_EQ(plugin().parameters[1]->getHostIndex(), -1);
    EXPECT_EQ(plugin().parameters[2]->getHostIndex(), 1);
    EXPECT_EQ(plugin().parameters[3]->getHostIndex(), 2);
}

TEST_F(Construction, GivesNothingWithoutAHostOrMemory) {
    EXPECT_EQ(Vardo::createEffect(nullptr), nullptr);
    host.version = 0;
    EXPECT_EQ(create(), nullptr);
    EXPECT_TRUE(module().createdIds.empty());
    host.version = 2400;
    module().createThrows = true;
    EXPECT_EQ(create(), nullptr);
}

TEST_F(Construction, LeavesAnEmptyEffectWhereThePluginCannotBeMade) {
    for (const bool noRecords : {false, true}) {
        module().createsNothing = true;
        if (noRecords) module().records.clear();
        Effect effect(create());
        ASSERT_NE(effect.get(), nullptr);
        EXPECT_EQ(effect->numParams, 0);
        EXPECT_EQ(effect->getParameter(effect.get(), 0), 0.0F);
        effect->setParameter(effect.get(), 0, 1.0F);
        void* data = &effect;
        EXPECT_EQ(effect.ask(effGetChunk, 0, 0, &data), 0);
        EXPECT_EQ(data, nullptr);
        char bytes[4] = {};
        EXPECT_EQ(effect.ask(effSetChunk, 0, 4, bytes), 0);
        EXPECT_EQ(effect.text(effGetParamName), "");
    }
}

TEST_F(Construction, ShellListsItsPlugins) {
    makeShell();
    host.knowsShells = true;
    Effect shell(create());
    ASSERT_NE(shell.get(), nullptr);
    EXPECT_TRUE(module().createdIds.empty());
    EXPECT_EQ(shell->uniqueID, 0);
    EXPECT_EQ(shell.ask(effGetPlugCategory), kPlugCategShell);
    for (int round = 0; round < 2; ++round) {
        char name[64];
        EXPECT_EQ(shell.ask(effShellGetNextPlugin, 0, 0, name), fourLetters("Stb1"));
        EXPECT_STREQ(name, "Stub One");
        EXPECT_EQ(shell.ask(effShellGetNextPlugin, 0, 0, name), fourLetters("Stb2"));
        EXPECT_STREQ(name, "Stub Two");
        EXPECT_EQ(shell.ask(effShellGetNextPlugin, 0, 0, name), 0);
        EXPECT_STREQ(name, "");
    }
}

TEST_F(Construction, ShellMakesThePluginTheHostWants) {
    makeShell();
    host.knowsShells = true;
    host.currentId = fourLetters("Stb2");
    {
        Effect second(create());
        EXPECT_EQ(second->uniqueID, fourLetters("Stb2"));
        EXPECT_EQ(second.text(effGetEffectName), "Stub Two");
        EXPECT_EQ(second->flags & effFlagsIsSynth, 0) << "not in a shell";
        EXPECT_EQ(second.ask(effGetPlugCategory), 0);
    }
    host.knowsShells = false; // then the id it answers means nothing
    {
        Effect first(create());
        EXPECT_EQ(first->uniqueID, fourLetters("Stb1"));
        char name[64];
        EXPECT_EQ(first.ask(effShellGetNextPlugin, 0, 0, name), 0);
    }
    host.knowsShells = true;
    host.currentId = fourLetters("None");
    Effect unknown(create());
    EXPECT_EQ(unknown->numInputs, 0);
    EXPECT_EQ(unknown->numParams, 0);
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
        Effect effect(create());
        EXPECT_EQ(effect->numInputs, known.inputs) << known.product << ' ' << known.version;
        VstPinProperties pin{};
        EXPECT_EQ(effect.ask(effGetInputProperties, known.inputs - 1, 0, &pin), 1);
        EXPECT_EQ(effect.ask(effGetInputProperties, known.inputs, 0, &pin), 0);
    }
}

TEST_F(Construction, InstrumentsAskForEvents) {
    const struct {
        int category;
        bool synth;
        int answer;
    } kinds[] = {{1000, false, 0}, {1001, false, 1}, {1002, true, 1}};
    for (const auto& kind : kinds) {
        module().records[0].category = kind.category;
        Effect effect(create());
        EXPECT_EQ((effect->flags & effFlagsIsSynth) != 0, kind.synth);
        EXPECT_EQ(effect.ask(effGetPlugCategory), kind.synth ? 2 : 0);
        for (const char* text : {"receiveVstMidiEvent", "sendVstMidiEvent", "receiveVstEvents"})
            EXPECT_EQ(effect.ask(effCanDo, 0, 0, const_cast<char*>(text)), kind.answer) << text;
        for (const char* text : {"receiveVstTimeInfo", "bypass"})
            EXPECT_EQ(effect.ask(effCanDo, 0, 0, const_cast<char*>(text)), 1) << text;
        for (const char* text : {"", "receiveVstEvent", "receiveVstTimeInfo2", "offline"})
            EXPECT_EQ(effect.ask(effCanDo, 0, 0, const_cast<char*>(text)), 0) << text;

        host.forget();
        effect.ask(effMainsChanged, 0, 0);
        EXPECT_EQ(host.count(audioMasterWantMidi), 0);
        effect.ask(effMainsChanged, 0, 1);
        EXPECT_EQ(host.count(audioMasterWantMidi), kind.answer);
    }
}

TEST_F(Construction, PluginGoesWithTheEffect) {
    Effect effect(create());
    ASSERT_NE(module().last, nullptr);
    // A plug-in that talks while it goes, to a host that calls back in: the effect has gone deaf.
    AEffect* dying = effect.get();
    host.onCall = [](AEffect* caller, std::int32_t) {
        EXPECT_EQ(caller->dispatcher(caller, effGetVstVersion, 0, 0, nullptr, 0), 0);
        caller->setParameter(caller, 0, 1.0F);
    };
    plugin().duringDestruction = [this] { plugin().host->hostIdle(); };
    host.forget();
    EXPECT_EQ(dying->dispatcher(dying, effClose, 0, 0, nullptr, 0), 1);
    effect.release();
    EXPECT_EQ(module().last, nullptr);
    EXPECT_EQ(host.count(audioMasterIdle), 1);
}

} // namespace
