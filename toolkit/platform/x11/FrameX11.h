// A frame's window on an X11 desktop.
#pragma once

#include "common/InFrameTextEdit.h"
#include "platform/Frame.h"
#include "x11/X11Clipboard.h"
#include "x11/X11Cursors.h"
#include "x11/X11DropTarget.h"
#include "x11/X11FileDialog.h"
#include "x11/X11Keyboard.h"
#include "x11/X11Menu.h"
#include "x11/X11Presenter.h"

#include <optional>

namespace Sorel {

/// A text box of a frame on X11: the control draws it, the frame's window has the keyboard for it.
class Sorel_TextEditX11 final : public CInFrameTextEdit {
  public:
    using CInFrameTextEdit::CInFrameTextEdit;
};

/// A child of the host's window, or a window of its own. Has a connection to the display for
/// itself, so nothing of the host's is touched. All work is done in doIdle. When the host destroys
/// the window, or the display goes away, everything here becomes inert.
class CFrameX11 final : public IFrame {
  public:
    /// Two presses count as a double click within this time and this far from each other.
    static constexpr std::uint32_t kDoubleClickMilliseconds = 400;
    static constexpr int kDoubleClickDistance = 4;

    CFrameX11(IFrameEvents& events,
              const CRect& size,
              xcb_window_t parent,
              const std::string& title);
    ~CFrameX11() override;

    bool getPosition(double* x, double* y) override;
    bool setSize(double width, double height) override;
    bool getSize(CRect* rect) override;
    bool getCurrentMouseLocation(CPoint* where) override;
    std::int32_t getCurrentMouseButtons() override;
    void setMouseCursor(CursorKind kind) override;
    void invalidRect(const CRect& rect) override { presenter_.invalidate(rect); }
    void setDropAccepted(bool accepted) override;
    CDragContainer* getDragContainer() override;
    void* getPlatformHandle() override;
    void doIdle() override;
    void destroyWindow() override;
    std::unique_ptr<IOSBitmap> createSurface() override;
    std::unique_ptr<IOSTextEdit> createTextEdit(ITextEditCallback& callback,
                                                const CRect& inFrame) override;
    std::unique_ptr<IOSOptionMenu> createOptionMenu() override;
    std::unique_ptr<IOSFileDialog> createFileDialog() override;
    void setKeyboardFocus(bool wanted) override;
    bool hasKeyboardFocus() override { return focused_; }
    void setClipboardText(const std::string& utf8) override;
    void requestClipboardText(std::function<void(const std::string&)> answer) override;
    int eventDescriptor() override;

    /// For COptionMenu_X11. Null when it cannot be shown now.
    std::shared_ptr<X11MenuPopup> openMenu(const MenuRequest& request,
                                           IOSOptionMenu::Answer answer);
    /// For the file dialogs: asked in each idle while they live.
    void watch(const std::shared_ptr<X11DialogSession>& dialog) { dialogs_.push_back(dialog); }
    /// What dialogs stay above: the host's outermost window, or ours.
    xcb_window_t topLevelWindow() const;

  private:
    // Window
    void createWindow(const std::string& title);
    void describeOwnWindow(const std::string& title);
    void fixSize() const;
    void windowIsGone();
    void cancelPopups();
    CPoint originOnScreen() const;
    CRect workAreaAt(CPoint onScreen) const;
    bool isOwnWindow() const { return parent_ == XCB_NONE; }

    // Events
    void handleEvents();
    void dispatch(const xcb_generic_event_t& event);
    bool dispatchToHelpers(const xcb_generic_event_t& event);
    void onError(const xcb_generic_error_t& error);
    void onButtonPress(const xcb_button_press_event_t& event);
    void onButtonRelease(const xcb_button_release_event_t& event);
    void onEnter(const xcb_enter_notify_event_t& event);
    void onLeave(const xcb_leave_notify_event_t& event);
    void onKey(const xcb_key_press_event_t& event, bool down);
    void onFocusOut(const xcb_focus_out_event_t& event);
    void onClientMessage(const xcb_client_message_event_t& message);
    void onConfigure(const xcb_configure_notify_event_t& event);
    void flushMotion();
    void enterAt(CPoint where);
    void exitAt(CPoint where);
    bool isDoubleClick(const xcb_button_press_event_t& event);
    void forwardKey(const xcb_key_press_event_t& event, bool down);
    std::shared_ptr<X11MenuPopup> shownMenu() const;
    void answerPopups();

    std::shared_ptr<X11Connection> connection_; // null without a display
    IFrameEvents* events_;
    xcb_window_t parent_;
    xcb_window_t window_ = XCB_NONE;
    X11Target target_;
    CRect size_;

    X11Presenter presenter_;
    std::optional<X11Keyboard> keyboard_;
    std::optional<X11Cursors> cursors_;
    std::optional<X11Clipboard> clipboard_;
    std::optional<X11DropTarget> drops_;
    std::shared_ptr<TextEditLink> textLink_ = std::make_shared<TextEditLink>();
    std::shared_ptr<X11FrameLink> link_ = std::make_shared<X11FrameLink>();
    std::weak_ptr<X11MenuPopup> menu_;
    std::vector<std::weak_ptr<X11DialogSession>> dialogs_;

    bool inIdle_ = false;
    bool inside_ = false;
    bool leftWhilePressed_ = false;
    bool focused_ = false;
    xcb_window_t focusBefore_ = XCB_NONE;
    xcb_timestamp_t lastTime_ = XCB_CURRENT_TIME;
    std::int32_t pressed_ = 0; // buttons, without modifiers
    CPoint mouse_{-1.0, -1.0};
    CursorKind cursor_ = CursorKind::kArrow;

    struct Motion {
        CPoint where;
        std::int32_t modifiers = 0;
    };
    std::optional<Motion> motion_; // the last one not yet told

    struct Click {
        std::uint8_t button = 0;
        xcb_timestamp_t time = 0;
        int x = 0;
        int y = 0;
    };
    Click lastClick_;
};

/// Milliseconds of a clock that never goes back.
std::uint64_t x11Ticks();

} // namespace Sorel
