// The menu behind a display's right button: the page's settings, the current ones ticked.
#pragma once

#include "controls/OptionMenu.h"

#include <functional>

namespace Orvel {
class COrvelScope;
enum ParameterId : int;
} // namespace Orvel

namespace Sorel {

/// Lives in the frame, unseen, and is filled anew for each opening.
class CDisplayMenu : public COptionMenu, public CControlListener {
  public:
    explicit CDisplayMenu(Orvel::COrvelScope& analyser);

    /// Page 0 scope, 1 spectrum, 2 stereo field; `where` in frame coordinates.
    void open(int page, CPoint where);
    /// The menu of a level meter; `resetOvers` does what a click on it does.
    void openForMeter(CPoint where, std::function<void()> resetOvers);
    void draw(CDrawContext&) override { setDirty(false); }
    void valueChanged(CControl* control) override;

  private:
    void addSwitch(const char* title, Orvel::ParameterId parameter);
    void addSub(const char* title, Orvel::ParameterId parameter);
    void change(Orvel::ParameterId parameter, double plain);
    void openAt(CPoint where);

    Orvel::COrvelScope& analyser_;
    std::function<void()> resetOvers_;
};

} // namespace Sorel
