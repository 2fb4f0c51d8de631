// A display of the test's own (Xvfb), and the user in front of it.
#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

/// Starts Xvfb and makes it DISPLAY; stops it in the end.
class XServer {
  public:
    XServer();
    ~XServer();
    XServer(const XServer&) = delete;
    XServer& operator=(const XServer&) = delete;

    bool isRunning() const { return process_ > 0; }
    /// As when the machine's display dies.
    void kill();

  private:
    int process_ = 0;
};

/// Moves the mouse, presses keys and looks at the screen, over a connection of its own. Also plays
/// the host, whose windows are made here.
class XUser {
  public:
    XUser();
    ~XUser();
    XUser(const XUser&) = delete;
    XUser& operator=(const XUser&) = delete;

    xcb_connection_t* xcb() const { return xcb_; }
    xcb_window_t root() const { return screen_->root; }
    xcb_atom_t atom(const std::string& name) const;
    /// A visible window at this place, as a host makes it.
    xcb_window_t hostWindow(int x, int y, int width, int height) const;

    void moveTo(int x, int y) const;
    void button(int number, bool down) const;
    void click(int number = 1) const;
    void key(int keyCode, bool down) const;
    void type(int keyCode) const;
    /// 0xRRGGBB on the screen.
    std::uint32_t pixel(int x, int y) const;
    /// The same of a rectangle, row by row; empty where it leaves the screen.
    std::vector<std::uint32_t> pixels(int x, int y, int width, int height) const;
    /// A window that no window manager looks after, as menus are.
    struct Popup {
        int x, y, width, height;
    };
    /// Those that are visible, the lowest first.
    std::vector<Popup> popups() const;
    void sync() const;
    /// Bytes of a property.
    std::string property(xcb_window_t window, const std::string& name) const;
    /// Windows, pixmaps and so on of all clients with a resource of this kind's name.
    std::size_t clientCount() const;
    /// Key presses that a window of this connection received so far.
    std::vector<int> receivedKeys() const;

  private:
    xcb_connection_t* xcb_;
    xcb_screen_t* screen_;
};

/// Key codes of the standard keyboard.
namespace KeyCode {
enum : int {
    k9 = 18,
    kDeadAcute = 21, // on a German keyboard
    kE = 26,
    kReturn = 36,
    kControl = 37,
    kA = 38,
    kShift = 50,
    kF5 = 71,
    kUp = 111,
};
}
