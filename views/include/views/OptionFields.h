// The settings of the spectra that have no dial: three small fields with menus.
#pragma once

#include "controls/OptionMenu.h"
#include "tree/ViewContainer.h"

#include <array>

namespace Orvel {
class COrvelScope;
enum ParameterId : int;
} // namespace Orvel

namespace Sorel {

/// Adds one entry per step of an integer parameter, with the parameter's own texts.
void addChoices(COptionMenu& menu, Vardo::IPluginParameter& parameter);

/// FFT size, update speed and analyse mode, each with its name below.
class COptionFields : public CViewContainer, public CControlListener {
  public:
    static constexpr CRect kRect{838.0, 500.0, 974.0, 527.0}; // frame coordinates

    explicit COptionFields(Orvel::COrvelScope& analyser);
    CView* newCopy() const override { return nullptr; }
    void valueChanged(CControl*) override {}
    /// The captions below the fields.
    void drawBackgroundRect(CDrawContext& context, const CRect& rect) override;

  private:
    struct Field {
        Orvel::ParameterId parameter;
        double left;
        double width;
        const char* caption;
    };
    static const std::array<Field, 3> kFields;

    void addField(Orvel::COrvelScope& analyser, const Field& field);
};

} // namespace Sorel
