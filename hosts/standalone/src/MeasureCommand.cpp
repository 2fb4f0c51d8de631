// The command `measure`.
#include "MeasureCommand.h"

#include "Player.h"
#include "UserError.h"
#include "frame/PluginBase.h"
#include "frame/PluginParameter.h"

#include <algorithm>

namespace Standalone {
namespace {

std::vector<ParameterReading> readParameters(Vardo::IPluginBase& plugin) {
    std::vector<ParameterReading> readings;
    for (int i = 0; i < plugin.getNumParameters(); ++i)
        if (Vardo::IPluginParameter* parameter = plugin.getParameter(i))
            readings.push_back({parameter->getKeyText(), parameter->getValue(),
                                parameter->getValue() == parameter->getDefault()});
    return readings;
}

/// Collects the transients of a whole recording; the plug-in keeps only the latest.
class TransientLog {
  public:
    TransientLog(Vardo::IAnalysisReadout& analysis, double sampleRate)
        : analysis_(analysis)
        , interval_(static_cast<std::int64_t>(sampleRate * kSecondsBetweenLooks)) {}

    void look(std::int64_t frames) {
        if (frames < next_) return;
        next_ = frames + interval_;
        analysis_.readAnalysis(snapshot_);
        take(snapshot_);
    }
    void take(const Vardo::AnalysisSnapshot& snapshot) {
        const auto kept = static_cast<std::int64_t>(snapshot.transients.size());
        seen_ = std::max(seen_, snapshot.transientCount - kept);
        for (; seen_ < snapshot.transientCount; ++seen_)
            positions_.push_back(snapshot.transients[static_cast<std::size_t>(seen_ % kept)]);
    }
    const std::vector<std::int64_t>& positions() const { return positions_; }

  private:
    // No two transients are closer than 75 ms, and the plug-in keeps a thousand.
    static constexpr double kSecondsBetweenLooks = 30;

    Vardo::IAnalysisReadout& analysis_;
    std::int64_t interval_;
    std::int64_t next_ = 0;
    std::int64_t seen_ = 0;
    Vardo::AnalysisSnapshot snapshot_;
    std::vector<std::int64_t> positions_;
};

void readPage(Vardo::IAnalysisReadout& analysis,
              const TransientLog& transients,
              const MeasureOptions& options,
              Measurement& result) {
    switch (result.analysis.page) {
    case Vardo::AnalyserPage::scope:
        result.transients = transients.positions();
        if (options.columns > 0) analysis.readScope(result.scope.emplace());
        break;
    case Vardo::AnalyserPage::spectrum:
    case Vardo::AnalyserPage::stereoField:
        analysis.readSpectrum(result.spectrum.emplace());
        break;
    case Vardo::AnalyserPage::system:
        break;
    }
}

} // namespace

Measurement measure(const PluginFactory& createPlugin,
                    AudioSource& source,
                    const MeasureOptions& options,
                    const std::function<void(std::int64_t)>& progress) {
    StandaloneHost host(options.tempo); // outlives the plug-in
    const std::unique_ptr<Vardo::IPluginBase> plugin = makePlugin(createPlugin, host);
    Vardo::IAnalysisReadout& analysis = readoutOf(*plugin);

    Player player(*plugin, source, options.blockSize, options.tempo);
    if (options.threaded) analysis.setThreadedProcessing(*options.threaded);
    if (options.page) activatePage(*plugin, *options.page);
    applySettings(*plugin, options.settings);
    if (options.columns > 0) analysis.setScopeColumns(options.columns);

    Measurement result;
    analysis.readAnalysis(result.analysis);
    result.blockSize = result.analysis.chunkLength;
    result.parameters = readParameters(*plugin);

    TransientLog transients(analysis, source.info().sampleRate);
    const std::int64_t frames = player.play([&](std::int64_t played) {
        transients.look(played);
        if (progress) progress(played);
    });
    if (frames == 0)
        throw UserError("'" + source.info().path + "' holds no sound; give another recording");
    analysis.readAnalysis(result.analysis);
    transients.take(result.analysis);
    readPage(analysis, transients, options, result);
    result.source = source.info();
    result.source.frames = frames;
    return result;
}

} // namespace Standalone
