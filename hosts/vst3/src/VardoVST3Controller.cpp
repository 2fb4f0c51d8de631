// Parameters, units and programs, MIDI mapping and views, as the host asks for them.
#include "VardoVST3.h"

#include "Guarded.h"
#include "Text16.h"
#include "VardoVST3EditorView.h"
#include "frame/PluginEditor.h"
#include "pluginterfaces/vst/ivstplugview.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <string_view>

namespace Vardo {

using namespace Steinberg;
using namespace Steinberg::Vst;

namespace {
/// Letters of the alphabet only, in any locale.
bool isSameText(std::string_view a, std::string_view b) {
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [lower](char x, char y) { return lower(x) == lower(y); });
}

bool isBypassName(const char* name) {
    return isSameText(name, "bypass") || isSameText(name, "kbypass");
}

std::string midiTitle(int channel, int controller) {
    return "kMidiCC" + std::to_string(controller) + "-Channel " + std::to_string(channel);
}
} // namespace

// --- built in `initialize` ----------------------------------------------------------------------

void Vardo_VST3::addParameters() {
    String128 rootName;
    copyText16(rootName, "Root");
    addUnit(new Unit(rootName, kRootUnitId, kNoParentUnitId,
                     record_.programs > 1 ? kProgramList : kNoProgramListId));

    parameters.init(10, 100);
    map_.build(*plugin_);
    bool hasBypass = false;
    for (int i = 0; i < map_.size(); ++i) {
        IPluginParameter& wrapped = *map_.parameter(i);
        VardoVST3Parameter::Role role;
        role.isBypass = !hasBypass && isBypassName(wrapped.getNameText());
        role.stepCount = role.isBypass ? 1 : 0;
        hasBypass = hasBypass || role.isBypass;
        auto* parameter = new VardoVST3Parameter(wrapped, static_cast<ParamID>(i), map_, role);
        parameters.addParameter(parameter);
        pluginParameters_.push_back(parameter);
        wrapped.addListener(this, false);
    }
    if (!hasBypass) addBypass();
    if (record_.category != kCategoryEffect) addMidiParameters();
}

void Vardo_VST3::addBypass() {
    String128 title;
    copyText16(title, "Bypass");
    auto* bypass = new StringListParameter(title, kBypassId, nullptr,
                                           ParameterInfo::kCanAutomate | ParameterInfo::kIsBypass);
    parameters.addParameter(bypass);
    for (const char* text : {"Off", "On"}) {
        String128 choice;
        copyText16(choice, text);
        bypass->appendString(choice);
    }
}

void Vardo_VST3::addMidiParameters() {
    for (int i = 0; i < kMidiIds; ++i) {
        String128 title;
        copyText16(title, midiTitle(i / kMidiControllers, i % kMidiControllers).c_str());
        parameters.addParameter(title, nullptr, 0, 0, ParameterInfo::kIsHidden,
                                static_cast<int32>(kFirstMidiId) + i);
    }
}

// --- parameters ---------------------------------------------------------------------------------

tresult PLUGIN_API Vardo_VST3::getParameterInfo(int32 index, ParameterInfo& info) {
    if (index < 0 || index >= parameters.getParameterCount()) return kInvalidArgument;
    return EditControllerEx1::getParameterInfo(index, info);
}

tresult PLUGIN_API Vardo_VST3::getParamStringByValue(ParamID id, ParamValue value, String128 text) {
    if (text == nullptr) return kInvalidArgument;
    return guarded(
        [&] { return EditControllerEx1::getParamStringByValue(id, normalizedOf(value), text); });
}

tresult PLUGIN_API Vardo_VST3::getParamValueByString(ParamID id, TChar* text, ParamValue& value) {
    if (text == nullptr) return kInvalidArgument;
    return guarded([&] { return EditControllerEx1::getParamValueByString(id, text, value); });
}

ParamValue PLUGIN_API Vardo_VST3::normalizedParamToPlain(ParamID id, ParamValue value) {
    return EditControllerEx1::normalizedParamToPlain(id, normalizedOf(value));
}

ParamValue PLUGIN_API Vardo_VST3::plainParamToNormalized(ParamID id, ParamValue plain) {
    return EditControllerEx1::plainParamToNormalized(id, std::isfinite(plain) ? plain : 0);
}

ParamValue PLUGIN_API Vardo_VST3::getParamNormalized(ParamID id) {
    const VardoVST3Parameter* parameter = pluginParameter(id);
    return parameter != nullptr ? parameter->value() : EditControllerEx1::getParamNormalized(id);
}

tresult PLUGIN_API Vardo_VST3::setParamNormalized(ParamID id, ParamValue value) {
    return guarded([&]() -> tresult {
        if (!std::isfinite(value)) return kInvalidArgument;
        return EditControllerEx1::setParamNormalized(id, value);
    });
}

tresult PLUGIN_API Vardo_VST3::setComponentHandler(IComponentHandler* handler) {
    return guarded([&] {
        const tresult result = EditControllerEx1::setComponentHandler(handler);
        lookForHostLoop();
        return result;
    });
}

// --- units and programs -------------------------------------------------------------------------

tresult PLUGIN_API Vardo_VST3::getUnitInfo(int32 index, UnitInfo& info) {
    if (index < 0 || index >= getUnitCount()) return kResultFalse;
    return EditControllerEx1::getUnitInfo(index, info);
}

int32 PLUGIN_API Vardo_VST3::getProgramListCount() { return record_.programs > 1 ? 1 : 0; }

tresult PLUGIN_API Vardo_VST3::getProgramListInfo(int32 index, ProgramListInfo& info) {
    if (index < 0 || index >= getProgramListCount()) return kResultFalse;
    info.id = kProgramList;
    copyText16(info.name, "Presets");
    info.programCount = record_.programs;
    return kResultOk;
}

tresult PLUGIN_API Vardo_VST3::getProgramName(ProgramListID list, int32, String128 name) {
    if (list != kProgramList || name == nullptr) return kResultFalse;
    copyText16(name, "Default");
    return kResultOk;
}

tresult PLUGIN_API Vardo_VST3::getProgramInfo(ProgramListID,
                                              int32,
                                              Steinberg::Vst::CString attribute,
                                              String128 value) {
    if (!FIDStringsEqual(attribute, "MusicalInstrument") || value == nullptr) return kResultFalse;
    copyText16(value, "Musical FX|Other");
    return kResultOk;
}

// --- MIDI ---------------------------------------------------------------------------------------

tresult PLUGIN_API Vardo_VST3::getMidiControllerAssignment(int32 bus,
                                                           int16 channel,
                                                           CtrlNumber controller,
                                                           ParamID& id) {
    const bool known = bus == 0 && channel >= 0 && channel < kMidiChannels && controller >= 0 &&
                       controller < kMidiControllers && record_.category != kCategoryEffect;
    if (!known) return kResultFalse;
    id = kFirstMidiId + static_cast<ParamID>(channel * kMidiControllers + controller);
    return kResultOk;
}

// --- views --------------------------------------------------------------------------------------

IPluginEditor* Vardo_VST3::editor() { return plugin_ == nullptr ? nullptr : plugin_->getEditor(); }

tresult PLUGIN_API Vardo_VST3::setKnobMode(KnobMode mode) {
    return guarded([&]() -> tresult {
        IPluginEditor* const window = editor();
        return window != nullptr && window->setKnobMode(mode) != 0 ? kResultTrue : kResultFalse;
    });
}

IPlugView* PLUGIN_API Vardo_VST3::createView(FIDString name) {
    IPlugView* view = nullptr;
    guarded([&]() -> tresult {
        if (!FIDStringsEqual(name, ViewType::kEditor) || editor() == nullptr) return kResultFalse;
        views_.reserve(views_.size() + 1);
        auto* made = new Vardo_VST3_EditorView(*this);
        views_.push_back(made);
        view = made;
        return kResultOk;
    });
    return view;
}

void Vardo_VST3::viewGone(const Vardo_VST3_EditorView* view) { std::erase(views_, view); }

} // namespace Vardo
