// Parameters, units, MIDI mapping and what the plug-in tells its host.
#include "AdapterFixture.h"

#include <cmath>
#include <limits>

namespace vst3_test {
namespace {

constexpr ParamID kBypass = Vardo::Vardo_VST3::kBypassId;
constexpr int32 kList = Vardo::Vardo_VST3::kProgramList;
using Edits = std::vector<Handler::Edit>;

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
    ParamValue read(ParamID id, std::u16string typed) const {
        ParamValue value = -1;
        EXPECT_EQ(effect->controller->getParamValueByString(id, typed.data(), value), kResultOk);
        return value;
    }
};

TEST_F(Controller, ParametersAreTheAutomatableOnesAndABypass) {
    create();
    ASSERT_EQ(effect->controller->getParameterCount(), 4);
    EXPECT_EQ(text(info(0).units), "%");
    EXPECT_EQ(info(0).defaultNormalizedValue, 0.5);
    EXPECT_EQ(info(0).flags, ParameterInfo::kCanAutomate);
    EXPECT_EQ(info(2).id, 2U);
    EXPECT_EQ(info(3).id, kBypass);
    EXPECT_EQ(info(3).flags, 0x10001);
    EXPECT_EQ(info(3).stepCount, 1);
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
    plugin().tellHostOf(0);
    EXPECT_EQ(display(0, 0.75), "75.0");
    EXPECT_NEAR(read(0, u"75 %"), 0.75, 1e-6);
    EXPECT_EQ(plugin().parameters[0]->getValue(), 20);
    EXPECT_TRUE(handler.edits.empty()) << "nobody heard of it";
    EXPECT_DOUBLE_EQ(effect->controller->normalizedParamToPlain(0, 0.75), 75);
    EXPECT_DOUBLE_EQ(effect->controller->plainParamToNormalized(0, 75), 0.75);
}

TEST_F(Controller, UnitsAndProgramsFollowTheRecord) {
    UnitInfo unit{};
    ProgramListInfo list{};
    for (const int32 programs : {1, 3}) {
        module().records[0].programs = programs;
        create();
        const FUnknownPtr<IUnitInfo> units(effect->component);
        ASSERT_EQ(units->getUnitInfo(0, unit), kResultOk);
        EXPECT_EQ(unit.programListId, programs > 1 ? kList : -1);
        EXPECT_EQ(units->getProgramListInfo(0, list) == kResultOk, programs > 1);
        for (const int32 index : {-1, 1, 1000})
            EXPECT_NE(units->getUnitInfo(index, unit), kResultOk);
    }
    EXPECT_EQ(list.programCount, 3);
    const FUnknownPtr<IUnitInfo> units(effect->component);
    String128 name{};
    EXPECT_EQ(units->getProgramName(kList, 2, name), kResultOk);
    EXPECT_EQ(text(name), "Default");
    EXPECT_NE(units->getProgramName(5, 0, name), kResultOk);
    EXPECT_NE(units->getProgramInfo(kList, 0, nullptr, name), kResultOk);
}

TEST_F(Controller, OnlyInstrumentsMapMidi) {
    for (const bool instrument : {false, true}) {
        if (instrument) module().records[0].category = Vardo::kCategoryInstrument;
        create();
        EXPECT_EQ(effect->component->getBusCount(kEvent, kInput), instrument ? 1 : 0);
        EXPECT_EQ(effect->controller->getParameterCount(), instrument ? 4 + 2080 : 4);
        const FUnknownPtr<IMidiMapping> midi(effect->component);
        ParamID id = 0;
        EXPECT_EQ(midi->getMidiControllerAssignment(0, 15, 129, id) == kResultOk, instrument);
        EXPECT_EQ(id, instrument ? 0x43303030U + 2079 : 0);
        const std::array<int16, 3> unknown[] = {{1, 0, 0}, {0, 16, 0}, {0, -1, 0}, {0, 0, 130}};
        for (const auto& [bus, channel, controller] : unknown)
            EXPECT_NE(midi->getMidiControllerAssignment(bus, channel, controller, id), kResultOk);
    }
}

TEST_F(Controller, GesturesReachTheHostAndEchoesEndThere) {
    create();
    Vardo::VardoCallback& callback = *plugin().host;
    plugin().tellHostOf(0);
    handler.onEdit = [&](const Handler::Edit& edit) { // one that answers with something else
        if (edit.kind == 'p') effect->controller->setParamNormalized(edit.id, 0.125);
    };
    EXPECT_EQ(callback.beginEdit(0), 1);
    plugin().parameters[0]->setValue(75);
    EXPECT_EQ(callback.endEdit(0), 1);
    EXPECT_EQ(handler.edits, (Edits{{'b', 0, 0}, {'p', 0, 0.75}, {'e', 0, 0}}));
    EXPECT_EQ(plugin().parameters[0]->getValue(), 75);
    handler.edits.clear();
    effect->controller->setParamNormalized(0, 0.25);
    for (const int index : {-1, 3, 99}) {
        EXPECT_EQ(callback.beginEdit(index), 0);
        callback.automate(index, 0.5F);
        EXPECT_EQ(callback.endEdit(index), 0);
    }
    callback.automate(0, std::nanf(""));
    EXPECT_TRUE(handler.edits.empty());
    EXPECT_TRUE(handler.restarts.empty());
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
    // A preset: several at once are told once.
    plugin().parameters[0]->setValue(10);
    plugin().parameters[2]->setValue(300);
    EXPECT_TRUE(handler.restarts.empty());
    loop.fireTimers();
    loop.fireTimers();
    EXPECT_EQ(handler.restarts, (std::vector<int32>{kParamValuesChanged}));
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
    callback.ioChanged();
    callback.refreshParameters();
    EXPECT_EQ(handler.restarts, (std::vector<int32>{26, kParamValuesChanged}));
    callback.updateDisplay();
    EXPECT_EQ(handler.edits, (Edits{{'u', 0, 0}, {'l', static_cast<ParamID>(kList), 0}}));
    callback.setLatency(256);
    EXPECT_EQ(effect->processor->getLatencySamples(), 256U);
    callback.setLatency(-3);
    EXPECT_EQ(effect->processor->getLatencySamples(), 0U);
    effect->controller->setComponentHandler(nullptr);
    callback.ioChanged();
    callback.refreshParameters();
    callback.updateDisplay();
    EXPECT_EQ(callback.beginEdit(0), 0);
    EXPECT_EQ(handler.references, 0);
}

} // namespace
} // namespace vst3_test
