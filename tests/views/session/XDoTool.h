// The user's hands: the program xdotool, which moves the mouse and presses keys of a display.
#pragma once

#include <string>
#include <vector>

/// A pixel of the screen.
struct Place {
    int x = 0;
    int y = 0;
};

/// Each call starts xdotool and waits for its end; what the display makes of it comes later.
class XDoTool {
  public:
    static bool isInstalled();

    static void moveTo(Place at);
    /// 1 left, 3 right, 4 and 5 the wheel away from and towards the user.
    static void click(Place at, int button = 1);
    static void doubleClick(Place at);
    static void clickWith(const std::string& modifier, Place at);
    /// With the left button, in several steps, as a hand moves.
    static void drag(Place from, Place to);
    static void press(Place at);
    static void release();
    /// An X key name: "Escape", "Return", "ctrl+a".
    static void key(const std::string& name);
    static void type(const std::string& text);
    /// At one go: a box opens, is typed in, and closes with the key.
    static void clickAndType(Place at, const std::string& text, const std::string& end);

  private:
    static int run(const std::vector<std::string>& arguments);
};
