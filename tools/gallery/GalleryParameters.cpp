#include "GalleryParameters.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>

namespace Gallery {

using Vardo::ParameterDescription;

Parameters::Parameters() = default;

Vardo::ParameterProperty& Parameters::add(const ParameterDescription& row) {
    auto parameter = std::make_unique<Vardo::ParameterProperty>();
    ParameterDescription own = row;
    own.id = static_cast<int>(parameters_.size());
    parameter->setFromDescription(own);
    parameters_.push_back(std::move(parameter));
    return *parameters_.back();
}

Vardo::IPluginParameter& Parameters::gain(float linear) {
    return add({"Gain", "Input Gain", "Gain", 0, 2, linear, 1, true, 0, Vardo::kGainInDecibels, 0});
}

Vardo::IPluginParameter& Parameters::milliseconds(float value) {
    return add(
        {"Rms", "RMS Length", "RMS", 10, 1000, value, 500, true, 0, Vardo::kMilliseconds, 0});
}

Vardo::IPluginParameter& Parameters::hertz(float value) {
    return add({"Hz", "Projector", "Hz", 20, 24000, value, 20, true, 0, Vardo::kHertz, 0});
}

Vardo::IPluginParameter& Parameters::percent(float value) {
    return add({"Rotate", "Rotate", "Rot", 0, 1, value, 0.65F, true, 0, Vardo::kPercent, 0});
}

Vardo::IPluginParameter& Parameters::onOff(bool on) {
    return add({"On", "On", "On", 0, 1, on ? 1.0F : 0.0F, 0, true, 0, Vardo::kSwitch, 0});
}

namespace {
// "A|B|C", counted from 0.
void nameOfChoice(float plain, char* text, int /*flags*/, void* names) {
    const char* name = static_cast<const char*>(names);
    for (int i = static_cast<int>(plain + 0.02F); i > 0; --i) {
        const char* bar = std::strchr(name, '|');
        if (bar == nullptr) break;
        name = bar + 1;
    }
    const std::size_t length = std::min<std::size_t>(std::strcspn(name, "|"), 60);
    std::memcpy(text, name, length);
    text[length] = 0;
}

bool choiceOfName(const char* text, float& plain, void* userData) {
    const std::string names = static_cast<const char*>(userData);
    float index = 0;
    for (std::size_t at = 0; at <= names.size(); ++index) {
        const std::size_t bar = std::min(names.find('|', at), names.size());
        if (names.compare(at, bar - at, text) == 0) {
            plain = index;
            return true;
        }
        at = bar + 1;
    }
    return false;
}
} // namespace

Vardo::IPluginParameter& Parameters::choice(const char* names, int count, int value) {
    Vardo::ParameterProperty& parameter =
        add({"Mode", "Metering Mode", "Mode", 0, static_cast<float>(count - 1),
             static_cast<float>(value), 0, true, 0, Vardo::kOwnText, 0});
    // Shown, never written through.
    parameter.setTextFunction(nameOfChoice, choiceOfName, const_cast<char*>(names));
    return parameter;
}

} // namespace Gallery
