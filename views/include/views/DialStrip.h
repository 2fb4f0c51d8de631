// The dials and switches of one page, below its display.
#pragma once

#include "controls/Dial.h"
#include "tree/ViewContainer.h"

#include <functional>
#include <vector>

namespace Orvel {
class COrvelScope;
enum ParameterId : int;
} // namespace Orvel

namespace Sorel {

class CPictureCache;

/// "Global" and the page's own group of dials, each under its heading, and a column of switches. A
/// dial has the same place on every page, so that the hand learns it.
class CDialStrip : public CViewContainer {
  public:
    /// Frame coordinates of every strip. Two pixels higher than its dials' cells: the labels'
    /// descenders.
    static constexpr CRect kRect{150.0, 455.0, 800.0, 537.0};

    CDialStrip(Orvel::COrvelScope& analyser,
               CPictureCache& pictures,
               CControlListener* listener,
               const char* groupName);

    enum class SwitchColor { kPlain, kGreen, kOrange };

    /// In the page's group, from the left.
    CDial* addDial(const char* label, Orvel::ParameterId parameter, bool stepped = false);
    CDial* addSmallDial(const char* label, Orvel::ParameterId parameter);
    /// From the top.
    void addSwitch(const char* caption, Orvel::ParameterId parameter, SwitchColor color);
    /// Sets the heading of the page's group over the dials that were added.
    void finish();

    CView* newCopy() const override { return nullptr; }

  protected:
    Orvel::COrvelScope& analyser() const { return analyser_; }

  private:
    CDial* placeDial(double x, const char* label, Orvel::ParameterId parameter);

    Orvel::COrvelScope& analyser_;
    CPictureCache& pictures_;
    CControlListener* listener_;
    std::string groupName_;
    int dials_ = 0;
    int switches_ = 0;
};

/// The scope's strip: its two time dials show the parameters that the sync mode uses.
class CScopeDialStrip : public CDialStrip {
  public:
    using VisibleTimeChanged = std::function<void(Vardo::IPluginParameter* parameter)>;

    CScopeDialStrip(Orvel::COrvelScope& analyser,
                    CPictureCache& pictures,
                    CControlListener* listener);

    /// Told of the parameter that "Visible Time" shows, at once and whenever it changes.
    void setVisibleTimeChanged(VisibleTimeChanged changed);

    void onParameterChanged(int parameterIndex) override;
    int attached(CViewContainer* parent) override;

  private:
    void bindTimeDials();

    CDial* syncDuration_ = nullptr;
    CDial* visibleTime_ = nullptr;
    VisibleTimeChanged visibleTimeChanged_;
};

CDialStrip* makeSpectrumStrip(Orvel::COrvelScope& analyser,
                              CPictureCache& pictures,
                              CControlListener* listener);
CDialStrip*
makeStereoStrip(Orvel::COrvelScope& analyser, CPictureCache& pictures, CControlListener* listener);

} // namespace Sorel
