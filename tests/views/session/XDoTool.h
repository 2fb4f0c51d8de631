// The user's hands: the program xdotool, which moves the mouse and presses keys of a display.
#pragma once

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>

#include <string>
#include <vector>

extern char** environ;

/// A pixel of the screen.
struct Place {
    int x = 0;
    int y = 0;
};

/// Each call starts xdotool and waits for its end; what the display makes of it comes later.
namespace XDoTool {

using Words = std::vector<std::string>;

inline Words operator+(Words first, const Words& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

inline int run(const Words& arguments) {
    Words texts = Words{"xdotool"} + arguments;
    std::vector<char*> pointers;
    for (std::string& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
    pid_t child = 0;
    const int error = posix_spawnp(&child, "xdotool", &actions, nullptr, pointers.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) return -1;
    int status = -1;
    waitpid(child, &status, 0);
    return status;
}

inline Words moving(Place at) { return {"mousemove", std::to_string(at.x), std::to_string(at.y)}; }

/// xdotool's own "click" rests for a tenth of a second.
inline Words pressing(int button) {
    const std::string number = std::to_string(button);
    return {"mousedown", number, "mouseup", number};
}

inline bool isInstalled() { return run({"version"}) == 0; }

inline void moveTo(Place at) { run(moving(at)); }

/// 1 left, 3 right, 4 and 5 the wheel away from and towards the user.
inline void click(Place at, int button = 1) { run(moving(at) + pressing(button)); }

inline void doubleClick(Place at) { run(moving(at) + pressing(1) + pressing(1)); }

inline void clickWith(const std::string& modifier, Place at) {
    run(moving(at) + Words{"keydown", modifier} + pressing(1) + Words{"keyup", modifier});
}

/// With the left button, in several steps, as a hand moves.
inline void drag(Place from, Place to) {
    constexpr int kSteps = 4;
    Words all = moving(from) + Words{"mousedown", "1"};
    for (int i = 1; i <= kSteps; ++i)
        all = all + moving({from.x + (to.x - from.x) * i / kSteps,
                            from.y + (to.y - from.y) * i / kSteps});
    run(all + Words{"mouseup", "1"});
}

/// An X key name: "Escape", "Return", "ctrl+a".
inline void key(const std::string& name) { run({"key", "--delay", "0", name}); }

inline void type(const std::string& text) { run({"type", "--delay", "0", "--", text}); }

/// At one go: a box opens, is typed in, and closes with the key.
inline void clickAndType(Place at, const std::string& text, const std::string& end) {
    run(moving(at) + pressing(1) +
        Words{"type", "--delay", "0", "--args", "1", "--", text, "key", "--delay", "0", end});
}

} // namespace XDoTool
