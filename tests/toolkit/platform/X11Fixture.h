// A display with a host's window, and a frame in it.
#pragma once

#include "Recorder.h"
#include "XServer.h"
#include "platform/X11.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <thread>

class X11Fixture : public testing::Test {
  protected:
    static constexpr int kX = 100; // of the host's window on the screen
    static constexpr int kY = 80;

    void SetUp() override {
        static XServer server;
        if (!server.isRunning())
            GTEST_SKIP() << "Xvfb is not installed (Debian package xvfb): no window to test with.";
        user = std::make_unique<XUser>();
        user->moveTo(5, 5);
        host = user->hostWindow(kX, kY, 400, 300);
        open(events, host);
    }
    void TearDown() override {
        if (!user) return;
        if (events.frame != nullptr) events.frame->release();
        xcb_destroy_window(user->xcb(), host);
        user->sync();
    }

    static void* handleOf(xcb_window_t window) {
        return reinterpret_cast<void*>(static_cast<std::uintptr_t>(window));
    }
    static xcb_window_t windowOf(Sorel::IFrame& frame) {
        return static_cast<xcb_window_t>(
            reinterpret_cast<std::uintptr_t>(frame.getPlatformHandle()));
    }
    void open(Recorder& recorder, xcb_window_t parent) {
        recorder.frame =
            Sorel::x11Platform().createFrame(recorder, {0, 0, 200, 150}, handleOf(parent), "Title");
        recorder.paint(200, 150, {10, 200, 30, 255});
        recorder.frame->invalidRect({0, 0, 200, 150});
        idle(recorder);
    }
    /// A few idles of a host, with time between them for the server.
    void idle(Recorder& recorder, int times = 3) {
        for (int i = 0; i < times; ++i) {
            user->sync();
            recorder.frame->doIdle();
            std::this_thread::sleep_for(std::chrono::milliseconds(4));
        }
    }
    /// Idles, with other programs at work in between, until something is so.
    template <class Condition>
    bool idleUntil(Condition condition) {
        for (int i = 0; i < 800 && !condition(); ++i) {
            idle(events, 1);
            serve();
        }
        return condition();
    }
    virtual void serve() {}

    std::unique_ptr<XUser> user;
    xcb_window_t host = XCB_NONE;
    Recorder events;
};
