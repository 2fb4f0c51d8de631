// Popup menus: windows above all others, with the pointer and the keyboard for themselves.
#pragma once

#include "common/MenuPainter.h"
#include "common/OpenMenu.h"
#include "x11/X11Bitmap.h"
#include "x11/X11Keyboard.h"

namespace Sorel {

/// One column on the screen.
class X11MenuWindow {
  public:
    X11MenuWindow(std::shared_ptr<X11Connection> connection,
                  const MenuColumn& column,
                  const X11PixelFormat& format,
                  bool withShadow,
                  xcb_cursor_t cursor);
    ~X11MenuWindow();
    X11MenuWindow(const X11MenuWindow&) = delete;
    X11MenuWindow& operator=(const X11MenuWindow&) = delete;

    xcb_window_t id() const { return window_; }
    const MenuColumn* column() const { return &column_; }
    /// Paints what changed; all of it when `exposed`.
    void show(bool exposed);

  private:
    void cutCorners() const;

    std::shared_ptr<X11Connection> connection_;
    const MenuColumn& column_;
    MenuPicture picture_;
    xcb_window_t window_ = XCB_NONE;
    xcb_colormap_t colormap_ = XCB_NONE;
    X11Target target_;
};

/// An open menu with its windows. The frame sends it the events of all its windows.
class X11MenuPopup {
  public:
    /// A host may hold the pointer for a moment; then we try again this long.
    static constexpr std::uint64_t kGrabPatienceMilliseconds = 300;

    struct Place {
        MenuStack::Setting setting;
        xcb_cursor_t cursor = XCB_NONE;
    };
    X11MenuPopup(std::shared_ptr<X11Connection> connection,
                 const MenuRequest& request,
                 const Place& place,
                 IOSOptionMenu::Answer answer);
    ~X11MenuPopup();
    X11MenuPopup(const X11MenuPopup&) = delete;
    X11MenuPopup& operator=(const X11MenuPopup&) = delete;

    bool isOpen() const { return menu_.isOpen(); }
    bool isShown() const { return menu_.isOpen() && !menu_.stack->isFinished(); }
    void cancel();
    void dismiss();

    /// Pointer, key and expose events while it is shown; true when it was one for the menu.
    bool onEvent(const xcb_generic_event_t& event, X11Keyboard& keyboard, std::uint64_t now);
    /// Opens and closes sub-menus, paints.
    void update(std::uint64_t now);
    /// Calls the answer when there is one. This object may be gone afterwards.
    void deliver() { menu_.deliver(); }

  private:
    bool onButton(const xcb_button_press_event_t& event, bool down, std::uint64_t now);
    void syncWindows();
    void grab(std::uint64_t now);
    void closeWindows();
    X11MenuWindow* windowOf(xcb_window_t id) const;

    std::shared_ptr<X11Connection> connection_;
    OpenMenu menu_;
    X11PixelFormat format_;
    bool withShadow_ = false;
    xcb_cursor_t cursor_;
    std::vector<std::unique_ptr<X11MenuWindow>> windows_;
    bool pointerGrabbed_ = false;
    bool keyboardGrabbed_ = false;
    std::uint64_t openedAt_;
};

class CFrameX11;

/// What the objects handed to controls keep of their window; null once it is gone.
struct X11FrameLink {
    CFrameX11* frame = nullptr;
};

class COptionMenu_X11 : public IOSOptionMenu {
  public:
    explicit COptionMenu_X11(std::shared_ptr<X11FrameLink> link)
        : link_(std::move(link)) {}
    ~COptionMenu_X11() override { COptionMenu_X11::cancel(); }
    COptionMenu_X11(const COptionMenu_X11&) = delete;
    COptionMenu_X11& operator=(const COptionMenu_X11&) = delete;

    bool popup(const MenuRequest& request, Answer answer) override;
    void cancel() override;
    bool isOpen() const override { return popup_ && popup_->isOpen(); }

  private:
    std::shared_ptr<X11FrameLink> link_;
    std::shared_ptr<X11MenuPopup> popup_;
};

} // namespace Sorel
