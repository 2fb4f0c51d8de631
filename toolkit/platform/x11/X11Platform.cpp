// The X11 desktop as a platform.
#include "platform/X11.h"

#include "x11/FrameX11.h"

#include <chrono>

namespace Sorel {

namespace {

class X11Platform : public IPlatform {
  public:
    IFrame* createFrame(IFrameEvents& events,
                        const CRect& size,
                        void* parentWindow,
                        const std::string& title) override {
        const auto parent = reinterpret_cast<std::uintptr_t>(parentWindow);
        return new CFrameX11(events, size, static_cast<xcb_window_t>(parent), title);
    }
    std::uint64_t ticks() override { return x11Ticks(); }
};

} // namespace

std::uint64_t x11Ticks() {
    using namespace std::chrono;
    return static_cast<std::uint64_t>(
        duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count());
}

IPlatform& x11Platform() {
    static X11Platform instance;
    return instance;
}

} // namespace Sorel
