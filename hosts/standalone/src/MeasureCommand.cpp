// The command `measure`.
#include "MeasureCommand.h"

#include "Player.h"
#include "PluginSetup.h"
#include "UserError.h"
#include "frame/PluginBase.h"
#include "frame/PluginParameter.h"

#include <stdexcept>

namespace Standalone {
namespace {

std::unique_ptr<Vardo::IPluginBase> newPlugin(const PluginFactory& createPlugin,
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

std::vector<ParameterReading> readParameters(Vardo::IPluginBase& plugin) {
    std::vector<ParameterReading> readings;
    for (int i = 0; i < plugin.getNumParameters(); ++i)
        if (Vardo::IPluginParameter* parameter = plugin.getParameter(i))
            readings.push_back({parameter->getKeyText(), parameter->getValue(),
                                parameter->getValue() == parameter->getDefault()});
    return readings;
}

} // namespace

void checkSettings(const PluginFactory& createPlugin, const MeasureOptions& options) {
    if (options.settings.empty()) return;
    StandaloneHost host(options.tempo);
    applySettings(*newPlugin(createPlugin, host), options.settings);
}

Measurement measure(const PluginFactory& createPlugin,
                    AudioSource& source,
                    const MeasureOptions& options,
                    const std::function<void(std::int64_t)>& progress) {
    StandaloneHost host(options.tempo); // outlives the plug-in
    const std::unique_ptr<Vardo::IPluginBase> plugin = newPlugin(createPlugin, host);
    Vardo::IAnalysisReadout& analysis = readoutOf(*plugin);

    Player player(*plugin, source, options.blockSize, options.tempo);
    if (options.threaded) analysis.setThreadedProcessing(*options.threaded);
    if (options.page) activatePage(*plugin, *options.page);
    applySettings(*plugin, options.settings);

    Measurement result;
    analysis.readAnalysis(result.analysis);
    result.blockSize = result.analysis.chunkLength;
    result.parameters = readParameters(*plugin);

    const std::int64_t frames = player.play(progress);
    if (frames == 0)
        throw UserError("'" + source.info().path + "' holds no sound; give another recording");
    analysis.readAnalysis(result.analysis);
    result.source = source.info();
    result.source.frames = frames;
    return result;
}

} // namespace Standalone
