// What the plug-in asks of its host through the adapter.
#include "AdapterFixture.h"

#include <cmath>

namespace {

using namespace vst2;
class Callback : public AdapterFixture {
  protected:
    Effect effect{create()};
    Vardo::VardoCallback& callback{*plugin().host};
};

TEST_F(Callback, UserChangesReachTheHostOnlyInsideAGesture) {
    callback.automate(0, 0.1F);
    EXPECT_EQ(host.count(audioMasterAutomate), 0);

    EXPECT_EQ(callback.beginEdit(0), 1);
    callback.automate(0, 0.2F);
    callback.automate(1, 0.3F); // not the one held
    callback.automate(0, std::nanf(""));
    EXPECT_EQ(callback.endEdit(0), 1);
    callback.automate(0, 0.4F);
    const auto told = host.calls(audioMasterAutomate);
    ASSERT_EQ(told.size(), 1U);
    EXPECT_EQ(told[0].index, 0);
    EXPECT_EQ(told[0].opt, 0.2F);
    ASSERT_EQ(host.count(audioMasterBeginEdit), 1);
    ASSERT_EQ(host.count(audioMasterEndEdit), 1);
    EXPECT_EQ(effect->getParameter(effect.get(), 0), 0.5F) << "telling is not setting";

    for (const int index : {-1, 3, 1000}) {
        EXPECT_EQ(callback.beginEdit(index), 1);
        callback.automate(index, 0.5F);
        EXPECT_EQ(callback.endEdit(index), 1);
    }
    EXPECT_EQ(host.count(audioMasterBeginEdit), 1);
    EXPECT_EQ(host.count(audioMasterEndEdit), 1);
    EXPECT_EQ(host.count(audioMasterAutomate), 1);
}

// A host that moves a parameter while the user holds it must not hear its own value back, nor may
// a host that answers every automation by setting the value run in circles.
TEST_F(Callback, HostsOwnChangesAreNotEchoed) {
    struct Echo : Vardo::ParameterChangeListener {
        explicit Echo(Vardo::VardoCallback& to)
            : callback(to) {}
        void parameterChanged(Vardo::IPluginParameter* parameter) override {
            callback.automate(parameter->getHostIndex(), parameter->getNormalizedValue());
        }
        Vardo::VardoCallback& callback;
    } echo(callback);
    plugin().parameters[0]->setImmediateListener(&echo);
    callback.beginEdit(0);
    effect->setParameter(effect.get(), 0, 0.9F);
    EXPECT_EQ(host.count(audioMasterAutomate), 0);

    host.onCall = [](AEffect* caller, std::int32_t opcode) {
        if (opcode == audioMasterAutomate) caller->setParameter(caller, 0, 0.3F);
    };
    plugin().parameters[0]->setValue(10.0F); // the user
    EXPECT_EQ(host.count(audioMasterAutomate), 1);
    plugin().parameters[0]->setImmediateListener(nullptr);
}

TEST_F(Callback, TellsOfTheHostAndToTheHost) {
    char text[65] = {};
    EXPECT_EQ(callback.getHostVendorString(text), 1);
    EXPECT_STREQ(text, "Fake Works");
    host.product = std::string(90, 'p'); // more than it may write
    EXPECT_EQ(callback.getHostProductString(text), 1);
    EXPECT_EQ(text, std::string(63, 'p'));
    EXPECT_EQ(callback.getHostVendorString(nullptr), 0);
    EXPECT_EQ(callback.getHostVersion(), 1);
    EXPECT_EQ(callback.getInterfaceKind(), 1);
    EXPECT_EQ(callback.reserved(), 0);
    callback.hostIdle();
    EXPECT_EQ(host.count(audioMasterIdle), 1);

    host.forget();
    callback.setLatency(256);
    EXPECT_EQ(effect->initialDelay, 256);
    callback.setLatency(-1);
    EXPECT_EQ(effect->initialDelay, 0);
    EXPECT_EQ(host.count(audioMasterIOChanged), 2);
    callback.refreshParameters();
    EXPECT_EQ(host.count(audioMasterUpdateDisplay), 1);
    EXPECT_EQ(host.count(audioMasterIOChanged), 3);
}

TEST_F(Callback, TempoIsTheHostsWhereItHasOne) {
    VstTimeInfo time{};
    EXPECT_EQ(callback.getTempo(), 120.0F);
    host.time = &time;
    time.tempo = 90;
    EXPECT_EQ(callback.getTempo(), 120.0F) << "not marked valid";
    time.flags = kVstTempoValid;
    EXPECT_EQ(callback.getTempo(), 90.0F);
    const auto asked = host.calls(audioMasterGetTime);
    EXPECT_EQ(asked.back().value, 0x400);
    effect.run({{0.0F}, {0.0F}}, 2);
    host.time = nullptr;
    EXPECT_EQ(callback.getTempo(), 90.0F) << "the last one known";
}

TEST_F(Callback, NewChannelCountsHoldFromTheNextResume) {
    callback.setNumInputPairs(2);
    callback.setNumOutputPairs(0);
    EXPECT_EQ(effect->numInputs, 4);
    EXPECT_EQ(effect->numOutputs, 0);
    EXPECT_EQ(host.count(audioMasterIOChanged), 2);
    // The host brings two inputs until it has followed, and no output any more.
    float samples[4] = {1, 2, 3, 4};
    float* two[] = {samples, samples};
    float notTheHosts[4] = {-1, -1, -1, -1};
    float* none[] = {notTheHosts, notTheHosts};
    effect->processReplacing(effect.get(), two, none, 4);
    EXPECT_FALSE(plugin().block.hasSidechain);
    EXPECT_EQ(notTheHosts[0], -1.0F);
    effect.ask(effMainsChanged, 0, 0);
    effect.ask(effMainsChanged, 0, 1);
    float* four[] = {samples, samples, samples, samples};
    effect->processReplacing(effect.get(), four, nullptr, 4);
    EXPECT_TRUE(plugin().block.hasSidechain);
    EXPECT_EQ(plugin().block.inputPairs, 2);
}

} // namespace
