// Makes a plug-in and brings it into the state the user asked for.
#include "PluginSetup.h"

#include "ReportText.h"
#include "UserError.h"
#include "frame/PluginBase.h"
#include "frame/PluginParameter.h"
#include "frame/StateChunk.h"

#include <cstddef>
#include <stdexcept>

namespace Standalone {
namespace {

Vardo::IPluginParameter* findParameter(Vardo::IPluginBase& plugin, const std::string& key) {
    for (int i = 0; i < plugin.getNumParameters(); ++i)
        if (Vardo::IPluginParameter* parameter = plugin.getParameter(i);
            parameter != nullptr && key == parameter->getKeyText())
            return parameter;
    return nullptr;
}

Vardo::IPluginParameter& parameterFor(Vardo::IPluginBase& plugin, const ParameterSetting& setting) {
    Vardo::IPluginParameter* parameter = findParameter(plugin, setting.key);
    if (parameter == nullptr)
        throw UserError("there is no parameter '" + setting.key +
                        "'; 'orvelscope measure --help' lists all of them");
    // The limits are floats: compare with what the user reads in the help, not with a neighbour.
    if (setting.value < static_cast<double>(parameter->getMin()) ||
        setting.value > static_cast<double>(parameter->getMax()))
        throw UserError(setting.key + " takes values from " + shortNumber(parameter->getMin()) +
                        " to " + shortNumber(parameter->getMax()) + ", not " +
                        shortNumber(setting.value));
    return *parameter;
}

} // namespace

std::unique_ptr<Vardo::IPluginBase> makePlugin(const PluginFactory& createPlugin,
                                               StandaloneHost& host) {
    std::unique_ptr<Vardo::IPluginBase> plugin = createPlugin(&host);
    if (!plugin) throw std::runtime_error("the analyser could not be made");
    return plugin;
}

Vardo::IAnalysisReadout& readoutOf(Vardo::IPluginBase& plugin) {
    Vardo::IAnalysisReadout* analysis = plugin.getAnalysis();
    if (analysis == nullptr) throw std::runtime_error("the analyser gives no results");
    return *analysis;
}

void activatePage(Vardo::IPluginBase& plugin, Vardo::AnalyserPage page) {
    void* data = nullptr;
    const int size = plugin.getChunk(&data);
    const std::vector<std::byte> chunk = Vardo::withActivePage(data, size, static_cast<int>(page));
    if (chunk.empty()) throw std::runtime_error("the plug-in's state names no page");
    plugin.setChunk(chunk.data(), static_cast<int>(chunk.size()));
}

void applySettings(Vardo::IPluginBase& plugin, const std::vector<ParameterSetting>& settings) {
    std::vector<Vardo::IPluginParameter*> parameters;
    for (const ParameterSetting& setting : settings)
        parameters.push_back(&parameterFor(plugin, setting));
    for (std::size_t i = 0; i < settings.size(); ++i)
        parameters[i]->setValue(static_cast<float>(settings[i].value));
    plugin.onIdle();
}

void checkSettings(const PluginFactory& createPlugin, const CommonOptions& options) {
    if (options.settings.empty()) return;
    StandaloneHost host(options.tempo);
    applySettings(*makePlugin(createPlugin, host), options.settings);
}

std::string parameterHelp(Vardo::IPluginBase& plugin) {
    std::string text = "Parameters for --set (lowest .. highest, default):\n";
    for (int i = 0; i < plugin.getNumParameters(); ++i) {
        Vardo::IPluginParameter* parameter = plugin.getParameter(i);
        if (parameter == nullptr) continue;
        text += "  " + padded(parameter->getKeyText(), 30) +
                padded(shortNumber(parameter->getMin()) + " .. " + shortNumber(parameter->getMax()),
                       14) +
                padded(shortNumber(parameter->getDefault()), 7) + parameter->getNameText() + "\n";
    }
    return text;
}

} // namespace Standalone
