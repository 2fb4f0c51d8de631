// The settings of the spectra that have no dial: three small fields with menus.
#pragma once

#include "controls/OptionMenu.h"
#include "tree/ViewContainer.h"

namespace Orvel {
class COrvelScope;
enum ParameterId : int;
} // namespace Orvel

namespace Sorel {

/// Adds one entry per step of an integer parameter, with the parameter's own texts.
void addChoices(COptionMenu& menu, Vardo::IPluginParameter& parameter);

/// FFT size, update speed and analyse mode.
class COptionFields : public CViewContainer, public CControlListener {
  public:
    static constexpr CRect kRect{838.0, 500.0, 974.0, 517.0}; // frame coordinates

    explicit COptionFields(Orvel::COrvelScope& analyser);
    CView* newCopy() const override { return nullptr; }
    void valueChanged(CControl*) override {}

  private:
    void addField(Orvel::COrvelScope& analyser, Orvel::ParameterId parameter);
    int fields_ = 0;
};

} // namespace Sorel
