// toolkit-gallery: the page in a window, or as a picture without a display.
#include "Gallery.h"
#include "platform/Offscreen.h"
#include "platform/X11.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <poll.h>

namespace {

constexpr int kIdleMs = 25;
constexpr std::uint64_t kSettleMs = 2000; // dials arrive, switches fade, sub-menus open

int writePicture(const std::string& path) {
    Sorel::COffscreenPlatform offscreen;
    Sorel::setPlatform(&offscreen);
    Gallery::Editor editor;
    editor.openFrame(nullptr);
    editor.showHandMadeStates();
    Sorel::COffscreenFrame* window = offscreen.frame();
    for (std::uint64_t time = 0; time < kSettleMs; time += kIdleMs) {
        offscreen.advance(kIdleMs);
        editor.idleFrame();
        if (time == kSettleMs / 2) window->moveMouse(window->menuItemPosition("Mastering"));
    }
    std::string problem;
    const bool written = window->writePng(path, &problem);
    editor.closeFrame();
    if (!written) std::fprintf(stderr, "toolkit-gallery: %s: %s\n", path.c_str(), problem.c_str());
    return written ? 0 : 1;
}

int runWindow() {
    Sorel::setPlatform(&Sorel::x11Platform());
    Gallery::Editor editor;
    editor.openFrame(nullptr);
    if (editor.frame()->platformFrame()->getPlatformHandle() == nullptr) {
        std::fputs("toolkit-gallery: no X11 display can be opened. Set DISPLAY, or draw a picture "
                   "with --png FILE.\n",
                   stderr);
        return 1;
    }
    while (!editor.wantsToClose()) {
        pollfd events{editor.frame()->platformFrame()->eventDescriptor(), POLLIN, 0};
        poll(&events, 1, kIdleMs);
        editor.idleFrame();
    }
    editor.closeFrame();
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    CLI::App app{"Shows every control of the toolkit in every state, in a window or as a picture.\n"
                 "Examples:\n  toolkit-gallery\n  toolkit-gallery --png gallery.png"};
    std::string png;
    app.add_option("--png", png, "write a picture and end; needs no display");
    CLI11_PARSE(app, argc, argv);
    return png.empty() ? runWindow() : writePicture(png);
}
