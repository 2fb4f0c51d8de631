// The editor: one window with the preset row, four pages, meters and dials.
#pragma once

#include "analysis/AnalyserEditor.h"
#include "core/Strings.h"
#include "frame/EditorHost.h"
#include "online/SessionListener.h"
#include "presets/SingleFXPresetInterface.h"
#include "tree/SorelineEditor.h"

#include <array>
#include <functional>
#include <memory>
#include <string>

namespace Dorna {
class UpdateCheck;
} // namespace Dorna

namespace Sorel {
class CButtonBar;
class CDisplayMenu;
class COffscreenPlatform;
class COptionFields;
class CPresetBrowser;
class CScope;
class CSystemInfo;
class CSystemPage;
class CVUMeter_Stereo;
class IPlatform;
} // namespace Sorel

namespace Orvel {

/// What an editor is made of besides its analyser.
struct EditorSurroundings {
    /// The host's ear for gestures; may be null.
    Vardo::VardoCallback* callback = nullptr;
    /// Where windows open. Called when the first one does.
    std::function<Sorel::IPlatform&()> desktop;
    /// As the system page shows it, "Version 1.0.4, 64 bit".
    std::string versionText;

    /// As the update server and the support report name the product.
    std::string product;
    std::string version;
    std::uint32_t versionNumber = 0; ///< two decimal digits a byte: 0x10004 is 1.0.4
    std::string webId;
    /// "host" or "host:port"; empty: updates are not checked, and the system page says so.
    std::string updateServer;
    /// Shows a folder or a web address to the user; empty for the desktop's own way.
    std::function<void(const std::string& target)> openOnDesktop;
};

/// Threads: GUI thread. The plug-in owns it; the window opens and closes any number of times.
class COrvelScopeEditor final : public IAnalyserEditor,
                                public Vardo::IEditorPicture,
                                public Sorel::CSorelineEditor,
                                public Sorel::CControlListener,
                                public Sorel::IPresetNameStore,
                                public Dorna::IDornaSessionListener,
                                private Dorna::IUpdateQuestion {
  public:
    static constexpr int kNumPages = 4;

    COrvelScopeEditor(COrvelScope& analyser, EditorSurroundings surroundings);
    ~COrvelScopeEditor() override;

    // IPluginEditor
    void open(void* parentWindow) override;
    int close() override;
    int setKnobMode(int) override { return 0; }
    bool getSize(int* width, int* height) override { return getHostSize(width, height); }
    void setSize(int width, int height) override { setHostSize(width, height); }
    bool isOpen() override { return isFrameOpen(); }
    void update(int part) override;
    void parameterChanged() override;
    bool onWheel(float distance) override;
    bool onKeyDown(const Vardo::KeyEvent& key) override;
    bool onKeyUp(const Vardo::KeyEvent& key) override;
    void idle() override { idleFrame(); }
    void setHost(Vardo::IEditorHost* host) override { host_ = host; }
    Vardo::IEditorPicture* picture() override { return this; }
    int eventDescriptor() override;
    bool isStill() override { return isFrameStill(); }

    // IAnalyserEditor
    void stateReplaced(int page) override;

    // IEditorPicture
    void openPicture() override;
    void passTime(int milliseconds) override;
    void pointAt(double x, double y) override;
    bool writePicture(const std::string& utf8Path, std::string& problem) override;

    // CControlListener
    void valueChanged(Sorel::CControl* control) override;

    // IPresetNameStore
    const char* currentPresetName() const override { return presetName_.c_str(); }
    void setCurrentPresetName(const char* name) override { presetName_.assign(name); }

    // IDornaSessionListener
    void checkEnded(CheckOutcome outcome) override;
    void downloadProgress(float fraction) override;
    void downloadEnded(const std::filesystem::path& file) override;

    /// 0 scope, 1 spectrum, 2 stereo field, 3 system.
    void setActivePage(int page);

    using Sorel::CSorelineEditor::parameterChanged;

  protected:
    // CSorelineEditor
    Sorel::CFrame* createFrame(const Sorel::CRect& rect, void* parentWindow) override;
    void onFrameCreated(Sorel::CFrame& frame) override;
    void onFrameClosing() override;
    void onIdle() override;
    std::string windowTitle() const override { return "Orvel Scope"; }
    void onCloseRequested() override;

  private:
    void openOn(Sorel::IPlatform& platform, void* parentWindow);
    void addHeader(Sorel::CFrame& frame);
    void addMeters(Sorel::CFrame& frame);
    Sorel::CVUMeter_Stereo* addMeter(Sorel::CViewContainer& parent, Sorel::CVUMeter_Stereo* meter);
    void addPages(Sorel::CFrame& frame);
    void addStrips(Sorel::CFrame& frame);
    Sorel::CViewContainer* addPage(Sorel::CFrame& frame, const Sorel::CRect& rect, int page);
    template <class View>
    View* addDisplay(Sorel::CViewContainer& page, View* view, int index);
    void addStereoRooms(Sorel::CViewContainer& page);

    void startUpdateCheck();
    void wireSystemPage();
    void updatePressed();
    void supportPressed();
    void openOnDesktop(const std::string& target);
    std::string hostInterface() const;
    bool askYesNo(const std::string& title,
                  const std::string& text,
                  std::function<void(bool yes)> answer) override;

    COrvelScope& analyser_;
    EditorSurroundings surroundings_;
    Vardo::IEditorHost* host_ = nullptr;
    std::unique_ptr<Sorel::COffscreenPlatform> memory_;
    Core::CStringBufferd<256> presetName_{"Default"}; // whole: no file's name is longer
    Sorel::CSingleFXPresetInterface presets_;

    // While a window is open, and only with a server.
    std::unique_ptr<Dorna::UpdateCheck> updateCheck_;
    bool checkAsked_ = false;   // by the user
    bool downloadDone_ = false; // and not yet told

    // Views; null while the window is closed.
    Sorel::CPresetBrowser* browser_ = nullptr;
    Sorel::CButtonBar* pageButtons_ = nullptr;
    Sorel::CVUMeter_Stereo* meter_ = nullptr;
    std::array<Sorel::CViewContainer*, kNumPages> pages_{};
    std::array<Sorel::CView*, kNumPages> strips_{};
    Sorel::COptionFields* optionFields_ = nullptr;
    Sorel::CDisplayMenu* displayMenu_ = nullptr;
    Sorel::CScope* scope_ = nullptr;
    Sorel::CSystemInfo* systemInfo_ = nullptr;
    Sorel::CSystemPage* systemPage_ = nullptr;
};

} // namespace Orvel
