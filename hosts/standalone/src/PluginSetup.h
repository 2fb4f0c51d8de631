// Makes a plug-in and brings it into the state the user asked for: page by the state chunk,
// parameters by key.
#pragma once

#include "CommandLine.h"
#include "frame/VardoCallback.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace Vardo {
class IAnalysisReadout;
class IPluginBase;
} // namespace Vardo

namespace Standalone {

/// The standalone program as a host.
class StandaloneHost final : public Vardo::VardoCallback {
  public:
    /// `tempo` in beats per minute.
    explicit StandaloneHost(double tempo)
        : tempo_(static_cast<float>(tempo)) {}

    float getTempo() override { return tempo_; }
    int getInterfaceKind() override { return static_cast<int>(Vardo::InterfaceKind::standalone); }

  private:
    float tempo_;
};

using PluginFactory =
    std::function<std::unique_ptr<Vardo::IPluginBase>(Vardo::VardoCallback* host)>;

/// Never null. `host` outlives the plug-in. Fails: std::runtime_error when there is no plug-in.
std::unique_ptr<Vardo::IPluginBase> makePlugin(const PluginFactory& createPlugin,
                                               StandaloneHost& host);

/// Fails: std::runtime_error when the plug-in measures nothing.
Vardo::IAnalysisReadout& readoutOf(Vardo::IPluginBase& plugin);

/// Threads: main thread.
/// Fails: std::runtime_error when the plug-in's own chunk has no page to change.
void activatePage(Vardo::IPluginBase& plugin, Vardo::AnalyserPage page);

/// Sets the parameters in the given order, all or none.
/// Fails: throws UserError for an unknown key or a value out of range.
void applySettings(Vardo::IPluginBase& plugin, const std::vector<ParameterSetting>& settings);

/// Finds out whether the settings can be made, before a file is opened. Fails: throws UserError.
void checkSettings(const PluginFactory& createPlugin, const CommonOptions& options);

/// One line per parameter: key, range, default, name.
std::string parameterHelp(Vardo::IPluginBase& plugin);

} // namespace Standalone
