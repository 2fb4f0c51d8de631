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
    for (const int index : {-1, 3, 1000}) {
        callback.beginEdit(index);
        callback.automate(index, 0.5F);
        callback.endEdit(index);
    }
    const auto told = host.calls(audioMasterAutomate);
    ASSERT_EQ(told.size(), 1U);
    EXPECT_EQ(told[0].index, 0);
    EXPECT_EQ(told[0].opt, 0.2F);
    EXPECT_EQ(host.count(audioMasterBeginEdit), 1);
    EXPECT_EQ(host.count(audioMasterEndEdit), 1);
    EXPECT_EQ(effect->getParameter(effect.get(), 0), 0.5F) << "telling is not setting";
}

// A host that moves a parameter while the user holds it must not hear its own value back, nor may
// a host that answers every automation by setting the value run in circles.
TEST_F(Callback, HostsOwnChangesAreNotEchoed) {
    plugin().tellHostOf(0);
    callback.beginEdit(0);
    effect->setParameter(effect.get(), 0, 0.9F);
    EXPECT_EQ(host.count(audioMasterAutomate), 0);

    host.onCall = [](AEffect* caller, std::int32_t opcode) {
        if (opcode == audioMasterAutomate) caller->setParameter(caller, 0, 0.3F);
    };
    plugin().parameters[0]->setValue(10.0F); // the user
    EXPECT_EQ(host.count(audioMasterAutomate), 1);
}

TEST_F(Callback, TellsOfTheHostAndToTheHost) {
    char text[65] = {};
    host.product = std::string(90, 'p'); // more than it may write
    EXPECT_EQ(callback.getHostProductString(text), 1);
    EXPECT_EQ(text, std::string(63, 'p'));
    EXPECT_EQ(callback.getHostVendorString(nullptr), 0);
    callback.setLatency(256);
    EXPECT_EQ(effect->initialDelay, 256);
    callback.setLatency(-1);
    EXPECT_EQ(effect->initialDelay, 0);
    EXPECT_EQ(host.count(audioMasterIOChanged), 2);
    callback.refreshParameters();
    EXPECT_EQ(host.count(audioMasterUpdateDisplay), 1);
    EXPECT_EQ(host.count(audioMasterIOChanged), 3);
}

TEST_F(Callback, NewChannelCountsHoldFromTheNextResume) {
    callback.setNumInputPairs(2);
    callback.setNumOutputPairs(0);
    EXPECT_EQ(effect->numInputs, 4);
    EXPECT_EQ(effect->numOutputs, 0);
    EXPECT_EQ(host.count(audioMasterIOChanged), 2);
    // The host brings two inputs until it has followed, and no output any more.
    float samples[4] = {1, 2, 3, 4};
    float notTheHosts[4] = {-1, -1, -1, -1};
    float* two[] = {samples, samples};
    float* none[] = {notTheHosts, notTheHosts};
    effect->processReplacing(effect.get(), two, none, 4);
    EXPECT_FALSE(plugin().block.hasSidechain);
    EXPECT_EQ(notTheHosts[0], -1.0F);
    effect.ask(effMainsChanged, 0, 1);
    float* four[] = {samples, samples, samples, samples};
    effect->processReplacing(effect.get(), four, nullptr, 4);
    EXPECT_TRUE(plugin().block.hasSidechain);
}

} // namespace
