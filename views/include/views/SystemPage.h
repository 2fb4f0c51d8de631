// The page about the machine: threading, preset path, update and support.
#pragma once

#include "controls/FileSelector.h"
#include "views/DisplayControl.h"

#include <functional>
#include <memory>
#include <string>

namespace Sorel {

/// The preset path, and the buttons to choose and to open it.
class CContentLocationView : public CView {
  public:
    /// `size` is the row from its title to its last button.
    explicit CContentLocationView(const CRect& size);
    ~CContentLocationView() override;

    /// Called when another folder was chosen and stored.
    void setFolderChanged(std::function<void()> changed) { folderChanged_ = std::move(changed); }
    /// Reads the path again. Happens whenever the row comes into sight.
    void refresh();
    const std::string& path() const { return path_; }

    void draw(CDrawContext& context) override;
    int onMouseDown(CPoint where, std::int32_t* buttons) override;
    int onMouseUp(CPoint where, std::int32_t* buttons) override;
    void onIdle() override;
    int removed(CViewContainer* parent) override;
    CView* newCopy() const override { return nullptr; }
    const char* getClassName() const override { return "CContentLocationView"; }

  private:
    enum class Button { kNone, kSelect, kOpen };
    Button buttonAt(CPoint where) const;
    void selectFolder();
    void openFolder();
    void complain(const std::string& text);

    std::string path_;
    CRect pathRect_;
    CRect selectRect_;
    CRect openRect_;
    Button pressed_ = Button::kNone;
    bool wasVisible_ = false;
    std::function<void()> folderChanged_;
    std::unique_ptr<CFileSelector> selector_;
};

/// Covers both wells with one of its own.
class CSystemPage : public IDisplayControl {
  public:
    CSystemPage(const CRect& size, Orvel::COrvelScope* analyser, std::string versionText);

    /// What "Update" and "Support" do; a button without an action is drawn dim and does nothing.
    void setUpdateAction(std::function<void()> action) { update_.action = std::move(action); }
    void setSupportAction(std::function<void()> action) { support_.action = std::move(action); }
    /// Why "Update" has no action; shown as the status, at first and when it is pressed anyway.
    void setNoUpdatesReason(std::string reason) { noUpdatesReason_ = std::move(reason); }
    /// Under the version, the end of it when it is long; empty for the reason above, or the maker's
    /// name.
    void setStatus(const std::string& text);
    std::string statusLine() const;

    void draw(CDrawContext& context) override;
    int onMouseDown(CPoint where, std::int32_t* buttons) override;
    int onMouseUp(CPoint where, std::int32_t* buttons) override;
    void onIdle() override;
    const char* getClassName() const override { return "CSystemPage"; }

    // In the coordinates of the parent.
    CRect threadBoxRect() const;
    CRect updateRect() const;
    CRect supportRect() const;

  private:
    /// A command whose button flashes when pressed and fades in about 400 ms.
    struct Command {
        std::function<void()> action;
        bool pressed = false;
        double fade = 0.0; // 255 to 0
    };
    void drawWell(CDrawContext& context) const;
    void drawThreading(CDrawContext& context) const;
    void drawProduct(CDrawContext& context) const;
    bool press(Command& command);
    void letGo(Command& command);
    CPoint origin() const { return getViewSize().topLeft(); }

    std::string versionText_;
    std::string status_;
    std::string noUpdatesReason_;
    Command update_;
    Command support_;
    std::uint64_t lastFade_ = 0; // ticks
    bool shownThreaded_ = false;
};

} // namespace Sorel
