// Brings a plug-in into the state the user asked for: page by the state chunk, parameters by key.
#pragma once

#include "CommandLine.h"
#include "frame/VardoCallback.h"

#include <string>
#include <vector>

namespace Vardo {
class IPluginBase;
}

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

/// Threads: main thread, before playing.
/// Fails: std::runtime_error when the plug-in's own chunk has no page to change.
void activatePage(Vardo::IPluginBase& plugin, Vardo::AnalyserPage page);

/// Sets the parameters in the given order, all or none.
/// Fails: throws UserError for an unknown key or a value out of range.
void applySettings(Vardo::IPluginBase& plugin, const std::vector<ParameterSetting>& settings);

/// One line per parameter: key, range, default, name.
std::string parameterHelp(Vardo::IPluginBase& plugin);

} // namespace Standalone
