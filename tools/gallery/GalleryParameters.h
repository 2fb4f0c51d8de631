// Parameters for the gallery's controls to work on.
#pragma once

#include "frame/ParameterProperty.h"

#include <array>
#include <memory>
#include <vector>

namespace Gallery {

/// One of each kind that an analyser has.
class Parameters {
  public:
    Parameters();
    /// A new parameter of this kind, at `value` (plain). Lives as long as this object.
    Vardo::IPluginParameter& gain(float linear);
    Vardo::IPluginParameter& milliseconds(float value);
    Vardo::IPluginParameter& hertz(float value);
    Vardo::IPluginParameter& percent(float value);
    Vardo::IPluginParameter& choice(const char* names, int count, int value);
    Vardo::IPluginParameter& onOff(bool on);

  private:
    Vardo::ParameterProperty& add(const Vardo::ParameterDescription& row);

    std::vector<std::unique_ptr<Vardo::ParameterProperty>> parameters_;
};

} // namespace Gallery
