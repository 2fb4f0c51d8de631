// How long a full picture takes to the window of a real display, beside a plain copy of the same
// bytes. Needs DISPLAY (under `xvfb-run`, or a desktop).
#include "platform/X11.h"

#include <benchmark/benchmark.h>
#include <poll.h>

#include <cstring>

using namespace Sorel;

namespace {

constexpr int kWidth = 1000;
constexpr int kHeight = 545;

/// A window that shows one surface and does nothing else.
struct Window final : IFrameEvents {
    Window() {
        frame = x11Platform().createFrame(*this, {0, 0, kWidth, kHeight}, nullptr, "bench");
        surface = frame->createSurface();
        surface->create(kWidth, kHeight);
        for (int i = 0; i < 20; ++i)
            settle();
    }
    ~Window() { frame->release(); }
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    bool isOpen() const { return frame->getPlatformHandle() != nullptr; }
    void settle() const {
        pollfd descriptor{frame->eventDescriptor(), POLLIN, 0};
        poll(&descriptor, 1, 2);
        frame->doIdle();
    }
    /// Sends the picture and waits until the server has read it: a put only starts when the one
    /// before has been reported finished, so the second call to doIdle waits for that report.
    void show() {
        frame->invalidRect({0, 0, kWidth, kHeight});
        frame->doIdle();
        pollfd descriptor{frame->eventDescriptor(), POLLIN, 0};
        poll(&descriptor, 1, 1000);
        frame->doIdle();
    }

    int platformMouseDown(CPoint, std::int32_t) override { return 2; }
    int platformMouseUp(CPoint, std::int32_t) override { return 2; }
    int platformMouseMoved(CPoint, std::int32_t) override { return 2; }
    void platformMouseEntered(CPoint, std::int32_t) override {}
    void platformMouseExited(CPoint, std::int32_t) override {}
    bool platformWheel(CPoint, int, float, std::int32_t) override { return false; }
    int platformKeyDown(const KeyEvent&) override { return -1; }
    int platformKeyUp(const KeyEvent&) override { return -1; }
    void platformDragEnter(CDragContainer&, CPoint) override {}
    void platformDragMove(CDragContainer&, CPoint) override {}
    void platformDragLeave(CDragContainer&, CPoint) override {}
    bool platformDrop(CDragContainer&, CPoint) override { return false; }
    IOSBitmap* platformSurface() override { return surface.get(); }
    void platformIdle() override {}
    void platformFocusLost() override {}
    void platformCloseRequested() override {}
    void platformResized(double, double) override {}

    IFrame* frame;
    std::unique_ptr<IOSBitmap> surface;
};

void BM_CopyInMemory(benchmark::State& state) {
    CMemoryBitmap from;
    CMemoryBitmap to;
    from.create(kWidth, kHeight);
    to.create(kWidth, kHeight);
    for (auto _ : state) {
        std::memcpy(to.getPixels(), from.getPixels(), static_cast<std::size_t>(from.byteSize));
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_CopyInMemory)->Unit(benchmark::kMicrosecond)->UseRealTime();

/// Real time: the copying is the server's work.
void BM_PictureToWindow(benchmark::State& state) {
    Window window;
    if (!window.isOpen()) return state.SkipWithError("no display: run it under xvfb-run");
    for (auto _ : state)
        window.show();
}
BENCHMARK(BM_PictureToWindow)->Unit(benchmark::kMicrosecond)->UseRealTime();

/// What a dial or a meter costs.
void BM_PartOfItToWindow(benchmark::State& state) {
    Window window;
    if (!window.isOpen()) return state.SkipWithError("no display: run it under xvfb-run");
    for (auto _ : state) {
        window.frame->invalidRect({100, 100, 172, 176});
        window.frame->doIdle();
        pollfd descriptor{window.frame->eventDescriptor(), POLLIN, 0};
        poll(&descriptor, 1, 1000);
        window.frame->doIdle();
    }
}
BENCHMARK(BM_PartOfItToWindow)->Unit(benchmark::kMicrosecond)->UseRealTime();

} // namespace
