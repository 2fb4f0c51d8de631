// Parameters, bypass and gestures, to the plug-in and to the host.
#include "EffectFixture.h"

#include <cmath>
#include <limits>
#include <thread>

namespace {

constexpr const char* kLongId = "A name that is much longer than"; // as many bytes as ids have
constexpr const char* kBypass = "MasterBypassID";

class Parameters : public EffectFixture {
  protected:
    Parameters() { start(); }
    AAX_Result
    update(const char* id, double value, AAX_EUpdateSource source = AAX_eUpdateSource_Unspecified) {
        return effect->UpdateParameterNormalizedValue(id, value, source);
    }
    AAX_IParameter& shown(const char* id) {
        return *effect->mParameterManager.GetParameterByID(id);
    }
    static float valueOf(std::size_t index) {
        return plugin().parameters[index]->getNormalizedValue();
    }
    std::string masterBypass() {
        AAX_CString id;
        EXPECT_EQ(effect->GetMasterBypassParameter(&id), AAX_SUCCESS);
        return id.Get();
    }
};

TEST_F(Parameters, HostSeesTheAutomatableOnes) {
    controller.sampleRate = 96000;
    ASSERT_EQ(start(), AAX_SUCCESS);
    EXPECT_EQ(module().createdIds.back(), static_cast<int>(record().uniqueId));
    EXPECT_EQ(plugin().sampleRate, 96000.0);
    EXPECT_EQ(plugin().blockSizes.back(), 0x400);
    EXPECT_EQ(effect->mPacketDispatcher.initializedFor, effect.get());
    ASSERT_EQ(effect->mParameterManager.list.size(), 4U);
    EXPECT_EQ(shown("Gain").normalized, 0.5);
    EXPECT_EQ(shown("Gain").defaultValue, 0.5);
    EXPECT_EQ(shown(kLongId).title, plugin().parameters[2]->getNameText());
    EXPECT_EQ(shown(kBypass).normalized, 0.0);
}

TEST_F(Parameters, FailedCreationIsAnErrorAndStaysSafe) {
    EXPECT_EQ(start(7), AAX_ERROR_NULL_OBJECT) << "no such record";
    module().createsNothing = true;
    EXPECT_EQ(start(), AAX_ERROR_NULL_OBJECT);
    EXPECT_EQ(effect->editor(), nullptr);
    EXPECT_EQ(update("Gain", 0.5), AAX_ERROR_INVALID_PARAMETER_ID);
    EXPECT_EQ(update(kBypass, 1), AAX_ERROR_INVALID_PARAMETER_ID);
    effect->idle();
    module().createThrows = true;
    EXPECT_EQ(start(), AAX_ERROR_UNKNOWN_EXCEPTION);
}

TEST_F(Parameters, HostsValuesReachThePlugin) {
    EXPECT_EQ(update(kLongId, 0.125), AAX_SUCCESS);
    EXPECT_EQ(valueOf(2), 0.125F);
    EXPECT_EQ(shown(kLongId).normalized, 0.125);
    EXPECT_EQ(valueOf(1), 0.0F) << "the hidden one";
    // The SDK's chunk is not for the plug-in, but what the host reads follows it.
    EXPECT_EQ(update("Gain", 0.25, AAX_eUpdateSource_Chunk), AAX_SUCCESS);
    EXPECT_EQ(valueOf(0), 0.5F);
    EXPECT_EQ(shown("Gain").normalized, 0.25);
    // Hostile ones.
    EXPECT_EQ(update("Hidden", 1), AAX_ERROR_INVALID_PARAMETER_ID);
    EXPECT_EQ(update("Gain", std::nan("")), AAX_ERROR_INVALID_ARGUMENT);
    EXPECT_EQ(update(nullptr, 1), AAX_ERROR_NULL_OBJECT);
    EXPECT_EQ(effect->GetMasterBypassParameter(nullptr), AAX_ERROR_NULL_OBJECT);
    effect->sdkThrows = true;
    EXPECT_EQ(update("Gain", 1), AAX_ERROR_UNKNOWN_EXCEPTION);
}

// Listeners hear at once where the change came from the plug-in's side, and only on the main
// thread; else in the next idle.
TEST_F(Parameters, SourceDecidesWhoHearsWhen) {
    struct Listener : Vardo::ParameterChangeListener {
        void parameterChanged(Vardo::IPluginParameter*) override { ++heard; }
        int heard = 0;
    } listener;
    plugin().parameters[0]->addListener(&listener, false);
    update("Gain", 0.1);
    EXPECT_EQ(listener.heard, 0);
    update("Gain", 0.2, AAX_eUpdateSource_Parameter);
    EXPECT_EQ(listener.heard, 1);
    std::thread([&] { update("Gain", 0.3, AAX_eUpdateSource_Parameter); }).join();
    EXPECT_EQ(listener.heard, 1);
    EXPECT_EQ(valueOf(0), 0.3F);
    plugin().parameters[0]->removeListener(&listener);
}

TEST_F(Parameters, BypassGoesToThePluginsParameterOrItsOperation) {
    EXPECT_EQ(masterBypass(), kBypass);
    update(kBypass, 1);
    EXPECT_TRUE(plugin().bypassed);
    update(kBypass, 0);
    EXPECT_FALSE(plugin().bypassed);

    for (const char* name : {"kBypass", "Bypass"}) {
        module().furtherSwitches = {name};
        start();
        EXPECT_EQ(masterBypass(), name);
        EXPECT_EQ(effect->mParameterManager.list.size(), 4U) << "and none of the adapter's";
        update(name, 1);
        EXPECT_EQ(valueOf(4), 1.0F);
        update(kBypass, 1);
        EXPECT_EQ(plugin().bypasses, 0);
    }
    module().furtherSwitches = {"bypass", "Bypass it", "kBypass "};
    start();
    EXPECT_EQ(masterBypass(), kBypass) << "exactly, or not at all";
}

TEST_F(Parameters, PluginsOwnChangesDoNotComeBack) {
    Vardo::VardoCallback& callback = *plugin().host;
    std::vector<double> requests;
    shown("Gain").request = [&](double value) { // a host that answers at once
        requests.push_back(value);
        update("Gain", value);
    };
    for (const int index : {-1, 3, 1000, std::numeric_limits<int>::max()})
        callback.automate(index, 0.5F);
    callback.automate(0, std::nanf(""));
    callback.automate(0, 0.875F);
    EXPECT_EQ(requests, std::vector<double>{0.875});
    EXPECT_EQ(shown("Gain").normalized, 0.875);
    EXPECT_EQ(valueOf(0), 0.5F) << "telling is not setting";
    // The other way round: what the plug-in says from within the host's call is an echo.
    plugin().tellHostOf(0);
    update("Gain", 0.625);
    EXPECT_EQ(valueOf(0), 0.625F);
    EXPECT_EQ(requests.size(), 1U);
    shown("Gain").request = nullptr;
    plugin().duringDestruction = [&] { callback.automate(0, 1.0F); }; // it may ask until its end
    effect.reset();
}

TEST_F(Parameters, GesturesGoByMapPosition) {
    Vardo::VardoCallback& callback = *plugin().host;
    EXPECT_EQ(callback.beginEdit(1), 1); // the third of the plug-in's, the second of the host's
    EXPECT_EQ(shown(kLongId).touches, 1);
    EXPECT_EQ(shown(kLongId).releases, 0);
    EXPECT_EQ(callback.endEdit(1), 1);
    EXPECT_EQ(shown(kLongId).releases, 1);
    for (const int index : {-1, 3, 1000}) {
        callback.beginEdit(index);
        callback.endEdit(index);
    }
    EXPECT_EQ(shown("Gain").touches + shown(kBypass).touches, 0);
}

TEST_F(Parameters, CallbackTellsOfTheHost) {
    Vardo::VardoCallback& callback = *plugin().host;
    char text[66] = {};
    text[65] = 'x';
    controller.hostName = std::string(63, 'h') + "\u00e4";
    EXPECT_EQ(callback.getHostProductString(text), 1);
    EXPECT_EQ(text, std::string(63, 'h'));
    EXPECT_EQ(text[65], 'x');
    EXPECT_EQ(callback.setLatency(64), 1);
    EXPECT_EQ(controller.latency, 64);
    transport.tempo = 93.5;
    EXPECT_EQ(callback.getTempo(), 93.5F);
    effect->transport = nullptr;
    effect->controller = nullptr;
    EXPECT_EQ(callback.getTempo(), 10.0F);
    EXPECT_EQ(callback.getHostProductString(text), 0);
    EXPECT_EQ(callback.setLatency(64), 0);
}

} // namespace
