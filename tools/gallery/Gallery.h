// The gallery's editor: builds the page and keeps what is on it alive.
#pragma once

#include "GalleryParameters.h"
#include "controls/Dial.h"
#include "controls/FileSelector.h"
#include "controls/OptionMenu.h"
#include "controls/ParamDisplay.h"
#include "draw/PictureCache.h"
#include "tree/SorelineEditor.h"

#include <memory>
#include <string>

namespace Gallery {

inline constexpr double kWidth = 1000.0;
inline constexpr double kHeight = 770.0;

class Editor : public Sorel::CSorelineEditor, public Sorel::CControlListener {
  public:
    Editor();
    ~Editor() override;

    /// Brings the states to light that only a user's hand makes: a value being typed, an open menu.
    void showHandMadeStates();
    bool wantsToClose() const { return closeRequested_; }

    void valueChanged(Sorel::CControl* control) override;
    void onCloseRequested() override { closeRequested_ = true; }

  protected:
    void onFrameCreated(Sorel::CFrame& frame) override;
    void onFrameClosing() override;
    std::string windowTitle() const override { return "Toolkit gallery"; }

  private:
    void addHeading(double x, double y, double width, const char* text);
    void addDials();
    void addButtons();
    void addFields();
    void addSurfaces();
    void showMessage();
    void chooseFile();
    Sorel::CDial*
    addDial(double x, double y, const char* label, Vardo::IPluginParameter& parameter);

    Parameters parameters_;
    Sorel::CPictureCache pictures_;
    Sorel::CFrame* page_ = nullptr; // while the frame is built and open
    Sorel::CDial* typedDial_ = nullptr;
    Sorel::COptionMenu* shownMenu_ = nullptr;
    Sorel::CTextLabel* status_ = nullptr;
    std::unique_ptr<Sorel::CFileSelector> fileSelector_;
    bool closeRequested_ = false;
};

} // namespace Gallery
