// The user's hands.
#include "XDoTool.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>

#include <algorithm>

extern char** environ;

namespace {

std::vector<std::string> moving(Place at) {
    return {"mousemove", std::to_string(at.x), std::to_string(at.y)};
}

std::vector<std::string> operator+(std::vector<std::string> first,
                                   const std::vector<std::string>& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

/// xdotool's own "click" rests for a tenth of a second.
std::vector<std::string> pressing(int button) {
    const std::string number = std::to_string(button);
    return {"mousedown", number, "mouseup", number};
}

} // namespace

int XDoTool::run(const std::vector<std::string>& arguments) {
    std::vector<std::string> texts = std::vector<std::string>{"xdotool"} + arguments;
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

bool XDoTool::isInstalled() { return run({"version"}) == 0; }

void XDoTool::moveTo(Place at) { run(moving(at)); }

void XDoTool::click(Place at, int button) { run(moving(at) + pressing(button)); }

void XDoTool::doubleClick(Place at) { run(moving(at) + pressing(1) + pressing(1)); }

void XDoTool::clickWith(const std::string& modifier, Place at) {
    run(moving(at) + std::vector<std::string>{"keydown", modifier} + pressing(1) +
        std::vector<std::string>{"keyup", modifier});
}

void XDoTool::drag(Place from, Place to) {
    constexpr int kSteps = 4;
    std::vector<std::string> all = moving(from) + std::vector<std::string>{"mousedown", "1"};
    for (int i = 1; i <= kSteps; ++i)
        all = all + moving({from.x + (to.x - from.x) * i / kSteps,
                            from.y + (to.y - from.y) * i / kSteps});
    run(all + std::vector<std::string>{"mouseup", "1"});
}

void XDoTool::press(Place at) { run(moving(at) + std::vector<std::string>{"mousedown", "1"}); }

void XDoTool::release() { run({"mouseup", "1"}); }

void XDoTool::key(const std::string& name) { run({"key", "--delay", "0", name}); }

void XDoTool::type(const std::string& text) { run({"type", "--delay", "0", "--", text}); }

void XDoTool::clickAndType(Place at, const std::string& text, const std::string& end) {
    run(moving(at) + pressing(1) +
        std::vector<std::string>{"type", "--delay", "0", "--args", "1", "--", text, "key",
                                 "--delay", "0", end});
}
