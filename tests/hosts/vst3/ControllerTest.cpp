// Parameters, units, MIDI mapping and what the plug-in tells its host.
#include "AdapterFixture.h"

#include <cmath>
#include <limits>

namespace vst3_test {
namespace {

constexpr ParamID kBypass = Vardo::Vardo_VST3::kBypassId;
constexpr int32 kList = Vardo::Vardo_VST3::kProgramList;

class Controller : public AdapterFixture {
  protected:
    ParameterInfo info(int32 index) const {
        ParameterInfo found{};
        EXPECT_EQ(effect->controller->getParameterInfo(index, found), kResultOk);
        return found;
    }
    std::string display(ParamID id, ParamValue value) const {
        String128 wide{};
        EXPECT_EQ(effect->controller->getParamStringByValue(id, value, wide), kResultOk);
        return text(wide);
    }
    /// -1 where it is not understood.
    ParamValue read(ParamID id, const std::u16string& typed) const {
        std::u16string copy = typed;
        ParamValue value = -1;
        const tresult result = effect->controller->getParamValueByString(id, copy.data(), value);
        return result == kResultOk ? value : -1;
    }
};

TEST_F(Controller, ParametersAreTheAutomatableOnesAndABypass) {
    create();
    ASSERT_EQ(effect->controller->getParameterCount(), 4);
    EXPECT_EQ(text(info(0).title), "Gain");
    EXPECT_EQ(text(info(0).units), "%");
    EXPECT_EQ(info(0).defaultNormalizedValue, 0.5);
    EXPECT_EQ(info(0).flags, ParameterInfo::kCanAutomate);
    EXPECT_EQ(info(2).id, 2U);
    EXPECT_EQ(text(info(2).title), "Last");
    EXPECT_EQ(info(3).id, kBypass);
    EXPECT_EQ(info(3).flags, 0x10001);
    EXPECT_EQ(info(3).stepCount, 1);
    EXPECT_EQ(display(kBypass, 0), "Off");
    EXPECT_EQ(display(kBypass, 1), "On");
    EXPECT_EQ(read(kBypass, u"On"), 1);
    ParameterInfo none{};
    for (const int32 index : {-1, 4, std::numeric_limits<int32>::max()})
        EXPECT_NE(effect->controller->getParameterInfo(index, none), kResultOk);
    for (const double value : {std::nan(""), -1e300, 1e300}) {
        display(kBypass, value);
        display(0, value);
        EXPECT_TRUE(std::isfinite(effect->controller->normalizedParamToPlain(0, value)));
        EXPECT_TRUE(std::isfinite(effect->controller->plainParamToNormalized(0, value)));
    }
    EXPECT_NE(effect->controller->getParamStringByValue(0, 0, nullptr), kResultOk);
    EXPECT_NE(effect->controller->setParamNormalized(99, 0.5), kResultOk);
}

TEST_F(Controller, APluginsOwnBypassTakesItsPlace) {
    module().furtherSwitches = {"bYpAsS", "KBypass"};
    create();
    ASSERT_EQ(effect->controller->getParameterCount(), 5);
    EXPECT_EQ(info(3).flags, 0x10001);
    EXPECT_EQ(info(3).stepCount, 1);
    EXPECT_EQ(info(4).flags, ParameterInfo::kCanAutomate) << "the second is a plain one";
}

TEST_F(Controller, TextsAreReadWithoutChangingAnything) {
    create();
    plugin().parameters[0]->setValue(20);
    int told = 0;
    struct Listener : Vardo::ParameterChangeListener {
        explicit Listener(int& count)
            : told(count) {}
        void parameterChanged(Vardo::IPluginParameter*) override { ++told; }
        int& told;
    } listener(told);
    plugin().parameters[0]->setImmediateListener(&listener);
    EXPECT_EQ(display(0, 0.75), "75.0");
    EXPECT_NEAR(read(0, u"75"), 0.75, 1e-6);
    EXPECT_NEAR(read(0, u"75 %"), 0.75, 1e-6);
    EXPECT_EQ(plugin().parameters[0]->getValue(), 20);
    EXPECT_EQ(told, 0);
    EXPECT_DOUBLE_EQ(effect->controller->normalizedParamToPlain(0, 0.75), 75);
    EXPECT_DOUBLE_EQ(effect->controller->plainParamToNormalized(0, 75), 0.75);
    plugin().parameters[0]->setImmediateListener(nullptr);
}

TEST_F(Controller, UnitsAndProgramsFollowTheRecord) {
    create();
    FUnknownPtr<IUnitInfo> units(effect->component);
    UnitInfo unit{};
    ProgramListInfo list{};
    ASSERT_EQ(units->getUnitCount(), 1);
    ASSERT_EQ(units->getUnitInfo(0, unit), kResultOk);
    EXPECT_EQ(text(unit.name), "Root");
    EXPECT_EQ(unit.programListId, -1);
    EXPECT_EQ(units->getProgramListCount(), 0);
    EXPECT_NE(units->getProgramListInfo(0, list), kResultOk);
    for (const int32 index : {-1, 1, 1000})
        EXPECT_NE(units->getUnitInfo(index, unit), kResultOk);
    units = nullptr;

    module().records[0].programs = 3;
    create();
    units = FUnknownPtr<IUnitInfo>(effect->component);
    ASSERT_EQ(units->getUnitInfo(0, unit), kResultOk);
    EXPECT_EQ(unit.programListId, kList);
    ASSERT_EQ(units->getProgramListInfo(0, list), kResultOk);
    EXPECT_EQ(text(list.name), "Presets");
    EXPECT_EQ(list.programCount, 3);
    String128 name{};
    EXPECT_EQ(units->getProgramName(kList, 2, name), kResultOk);
    EXPECT_EQ(text(name), "Default");
    EXPECT_NE(units->getProgramName(5, 0, name), kResultOk);
    EXPECT_EQ(units->getProgramInfo(kList, 0, "MusicalInstrument", name), kResultOk);
    EXPECT_EQ(text(name), "Musical FX|Other");
    EXPECT_NE(units->getProgramInfo(kList, 0, "Other", name), kResultOk);
    EXPECT_NE(units->getProgramInfo(kList, 0, nullptr, name), kResultOk);
    EXPECT_NE(units->hasProgramPitchNames(kList, 99), kResultOk);
    EXPECT_NE(units->getProgramPitchName(77, -1, 0, name), kResultOk);
}

TEST_F(Controller, OnlyInstrumentsMapMidi) {
    create();
    ParamID id = 0;
    EXPECT_NE(
        FUnknownPtr<IMidiMapping>(effect->component)->getMidiControllerAssignment(0, 0, 1, id),
        kResultOk);
    module().records[0].category = Vardo::kCategoryInstrument;
    create();
    EXPECT_EQ(effect->component->getBusCount(kEvent, kInput), 1);
    EXPECT_EQ(effect->controller->getParameterCount(), 4 + 2080);
    EXPECT_EQ(text(info(4 + 131).title), "kMidiCC1-Channel 1");
    const FUnknownPtr<IMidiMapping> midi(effect->component);
    EXPECT_EQ(midi->getMidiControllerAssignment(0, 15, 129, id), kResultOk);
    EXPECT_EQ(id, 0x43303030U + 2079);
    for (const auto& [bus, channel, controller] :
         {std::tuple{1, 0, 0}, {0, 16, 0}, {0, -1, 0}, {0, 0, 130}, {0, 0, -1}})
        EXPECT_NE(midi->getMidiControllerAssignment(bus, static_cast<int16>(channel),
                                                    static_cast<CtrlNumber>(controller), id),
                  kResultOk);
}

TEST_F(Controller, GesturesReachTheHostAndEchoesEndThere) {
    create();
    struct User : Vardo::ParameterChangeListener {
        explicit User(Vardo::VardoCallback& to)
            : callback(to) {}
        void parameterChanged(Vardo::IPluginParameter* parameter) override {
            callback.automate(parameter->getHostIndex(), parameter->getNormalizedValue());
        }
        Vardo::VardoCallback& callback;
    } user(*plugin().host);
    plugin().parameters[0]->setImmediateListener(&user);
    handler.onEdit = [&](const Handler::Edit& edit) { // one that answers with something else
        if (edit.kind == 'p') effect->controller->setParamNormalized(edit.id, 0.125);
    };
    EXPECT_EQ(user.callback.beginEdit(0), 1);
    plugin().parameters[0]->setValue(75);
    EXPECT_EQ(user.callback.endEdit(0), 1);
    EXPECT_EQ(handler.edits,
              (std::vector<Handler::Edit>{{'b', 0, 0}, {'p', 0, 0.75}, {'e', 0, 0}}));
    EXPECT_EQ(plugin().parameters[0]->getValue(), 75);
    handler.edits.clear();
    effect->controller->setParamNormalized(0, 0.25);
    for (const int index : {-1, 3, 99}) {
        EXPECT_EQ(user.callback.beginEdit(index), 0);
        user.callback.automate(index, 0.5F);
        EXPECT_EQ(user.callback.endEdit(index), 0);
    }
    user.callback.automate(0, std::nanf(""));
    EXPECT_TRUE(handler.edits.empty());
    EXPECT_TRUE(handler.restarts.empty());
    plugin().parameters[0]->setImmediateListener(nullptr);
}

TEST_F(Controller, WhatThePluginChangesByItselfIsToldOnTheMainThread) {
    RunLoop loop;
    Context context;
    context.loop = &loop;
    create(&context);
    plugin().duringIdle = [&] {
        for (auto& parameter : plugin().parameters)
            parameter->deliverPending();
    };
    // The host's own changes are no news.
    change({Queue(0, {{0, 0.9}})});
    loop.fireTimers();
    EXPECT_TRUE(handler.restarts.empty());
    // A preset: several at once are told once.
    plugin().parameters[0]->setValue(10);
    plugin().parameters[2]->setValue(300);
    EXPECT_TRUE(handler.restarts.empty());
    loop.fireTimers();
    EXPECT_EQ(handler.restarts, (std::vector<int32>{kParamValuesChanged}));
    loop.fireTimers();
    EXPECT_EQ(handler.restarts.size(), 1U);
    // One that changes another on the audio thread's behalf, told where the host saves.
    plugin().parameters[0]->setNormalizedValue(0.77, Vardo::kFromHost);
    effect->state();
    EXPECT_EQ(handler.restarts.size(), 2U);
    effect.reset();
    EXPECT_EQ(loop.references + context.references, 0);
}

TEST_F(Controller, RequestsOfThePluginReachTheHost) {
    create();
    auto& callback = *plugin().host;
    EXPECT_EQ(callback.getInterfaceKind(), 2);
    EXPECT_EQ(callback.getHostVersion(), 0);
    callback.ioChanged();
    callback.refreshParameters();
    EXPECT_EQ(handler.restarts, (std::vector<int32>{26, kParamValuesChanged}));
    callback.updateDisplay();
    EXPECT_EQ(handler.edits,
              (std::vector<Handler::Edit>{{'u', 0, 0}, {'l', static_cast<ParamID>(kList), 0}}));
    callback.setLatency(256);
    EXPECT_EQ(effect->processor->getLatencySamples(), 256U);
    callback.setLatency(-3);
    EXPECT_EQ(effect->processor->getLatencySamples(), 0U);
    EXPECT_EQ(effect->processor->getTailSamples(), 576000000U);
    effect->controller->setComponentHandler(nullptr);
    callback.ioChanged();
    callback.refreshParameters();
    callback.updateDisplay();
    EXPECT_EQ(callback.beginEdit(0), 0);
    EXPECT_EQ(handler.references, 0);
}

} // namespace
} // namespace vst3_test
