// The X11 window in front of a real server: pixels, mouse, keys, menus, and the ways it can end.
#include "X11Fixture.h"
#include "x11/X11Presenter.h"

using namespace Sorel;

namespace {

class X11Test : public X11Fixture {
  protected:
    void moveIn(int x, int y) {
        user->moveTo(kX + x, kY + y);
        idle(events);
    }
};

TEST_F(X11Test, ShowsItsPixelsAndWhatChangedOfThem) {
    EXPECT_EQ(user->pixel(kX + 199, kY + 149), 0x0AC81EU);
    EXPECT_EQ(user->pixel(kX + 200, kY + 150), 0x204060U) << "beyond it the host's window";
    CRenderer renderer;
    renderer.attach(*events.surface);
    renderer.clear({255, 0, 0, 255});
    events.frame->invalidRect({10, 10, 20, 20});
    events.frame->invalidRect({50, 10, 60.5, 20});
    idle(events);
    EXPECT_EQ(user->pixel(kX + 10, kY + 19), 0xFF0000U);
    EXPECT_EQ(user->pixel(kX + 60, kY + 10), 0xFF0000U);
    EXPECT_EQ(user->pixel(kX + 61, kY + 10), 0x0AC81EU);
    // Uncovered parts come from the surface.
    const xcb_window_t cover = user->hostWindow(kX, kY, 400, 300);
    xcb_destroy_window(user->xcb(), cover);
    idle(events);
    EXPECT_EQ(user->pixel(kX + 100, kY + 100), 0xFF0000U);
}

TEST_F(X11Test, HasOnePictureOnTheWayAtATime) {
    const auto connection = X11Connection::open();
    CX11Bitmap bitmap(connection);
    ASSERT_TRUE(bitmap.create(50, 50));
    ASSERT_TRUE(bitmap.isShared());
    const X11Target target{connection.get(), host, xcb_generate_id(connection->xcb()),
                           formatForWindow(*connection, host)};
    xcb_create_gc(connection->xcb(), target.gc, host, 0, nullptr);
    X11Presenter presenter;
    presenter.setTarget(target);
    const auto completions = [&] {
        connection->reply(xcb_get_input_focus_reply, xcb_get_input_focus(connection->xcb()));
        int count = 0;
        while (const XcbOwned<xcb_generic_event_t> event{xcb_poll_for_event(connection->xcb())})
            count += event->response_type == connection->shmCompletionEvent() ? 1 : 0;
        return count;
    };
    for (int i = 0; i < 40; ++i) {
        presenter.invalidate({i * 1.0, 0, i + 3.0, 5});
        presenter.show(&bitmap, 100);
    }
    EXPECT_EQ(completions(), 1);
    presenter.onCompletion();
    presenter.show(&bitmap, 100);
    presenter.show(&bitmap, 100);
    EXPECT_EQ(completions(), 1) << "what has gathered goes at once";
    presenter.onCompletion();
    presenter.show(&bitmap, 100);
    EXPECT_EQ(completions(), 0);
}

TEST_F(X11Test, ShowsThemWithoutSharedMemoryToo) {
    setenv("ORVEL_NO_SHM", "1", 1);
    Recorder plain;
    const xcb_window_t other = user->hostWindow(600, kY, 400, 300);
    open(plain, other);
    unsetenv("ORVEL_NO_SHM");
    // Higher than one piece of a put.
    plain.frame->setSize(390, 290);
    plain.paint(390, 290, {1, 2, 3, 255});
    plain.frame->invalidRect({0, 0, 390, 290});
    idle(plain);
    EXPECT_EQ(user->pixel(600, kY), 0x010203U);
    EXPECT_EQ(user->pixel(600 + 389, kY + 289), 0x010203U);
    plain.frame->release();
}

TEST_F(X11Test, TellsOfTheMouse) {
    moveIn(30, 40);
    EXPECT_EQ(events.take(""), "enter 30,40; move 30,40");
    user->click();
    user->click();
    idle(events);
    EXPECT_EQ(events.take(), "down 30,40 2; up 30,40; down 30,40 3; up 30,40");
    user->key(KeyCode::kShift, true);
    user->click(3);
    user->click(8);
    user->key(KeyCode::kShift, false);
    idle(events);
    EXPECT_EQ(events.take("key"), "down 30,40 18; up 30,40 10; down 30,40 110; up 30,40 10");
    user->click(4);
    user->click(5);
    user->click(7);
    idle(events);
    EXPECT_EQ(events.take(), "wheel1+1 30,40; wheel1-1 30,40; wheel0+1 30,40");
    // Many moves between two idles are one; the press comes after it.
    for (int x = 31; x < 60; ++x)
        user->moveTo(kX + x, kY + 40);
    user->click();
    idle(events);
    EXPECT_EQ(events.take(""), "move 59,40; down 59,40 2; up 59,40");
}

TEST_F(X11Test, FollowsAPressedMouseOutOfTheWindow) {
    moveIn(30, 40);
    user->button(1, true);
    user->moveTo(kX - 20, kY + 500);
    idle(events);
    EXPECT_EQ(events.take(), "enter 30,40; down 30,40 2");
    user->moveTo(kX - 30, kY + 500);
    idle(events);
    EXPECT_EQ(events.take(""), "move -30,500 2");
    user->button(1, false);
    idle(events);
    EXPECT_EQ(events.take(), "up -30,500; exit");
}

TEST_F(X11Test, GivesKeysToTheHostUnlessTheyAreTaken) {
    moveIn(30, 40);
    events.take("");
    user->receivedKeys();
    user->type(KeyCode::kF5);
    user->type(KeyCode::k9);
    user->key(KeyCode::kControl, true);
    user->type(KeyCode::kA);
    user->key(KeyCode::kControl, false);
    idle(events);
    EXPECT_EQ(events.take(), "key 44 '0' 0; key 57 '57' 0; key 55 '0' 0; key 0 '97' 8");
    EXPECT_TRUE(user->receivedKeys().empty());
    events.keyAnswer = -1;
    user->type(KeyCode::kA);
    idle(events);
    EXPECT_EQ(user->receivedKeys(), std::vector<int>{KeyCode::kA});
}

TEST_F(X11Test, ATextBoxTakesTheKeyboardAndGivesItBack) {
    xcb_set_input_focus(user->xcb(), XCB_INPUT_FOCUS_PARENT, host, XCB_CURRENT_TIME);
    user->sync();
    EditRecorder edit;
    auto box = events.frame->createTextEdit(edit, {0, 0, 80, 12});
    box->setFocus();
    events.textEdit = box.get();
    idle(events);
    EXPECT_TRUE(events.frame->hasKeyboardFocus());
    // The mouse is elsewhere: only the focus brings these. A dead key waits for its letter.
    ASSERT_EQ(std::system("setxkbmap de"), 0);
    idle(events);
    for (const int key : {KeyCode::kA, KeyCode::kDeadAcute, KeyCode::kE})
        user->type(key);
    idle(events);
    std::system("setxkbmap us");
    EXPECT_EQ(box->getText(), "a\u00E9");
    user->type(KeyCode::kReturn);
    idle(events);
    EXPECT_EQ(edit.log, "commit ");
    EXPECT_FALSE(events.frame->hasKeyboardFocus());
    user->receivedKeys();
    user->type(KeyCode::kA);
    EXPECT_EQ(user->receivedKeys(), std::vector<int>{KeyCode::kA});

    box = events.frame->createTextEdit(edit, {0, 0, 80, 12});
    box->setFocus();
    idle(events);
    xcb_set_input_focus(user->xcb(), XCB_INPUT_FOCUS_PARENT, host, XCB_CURRENT_TIME);
    EXPECT_TRUE(idleUntil([&] { return edit.log == "commit commit "; })) << edit.log;
    EXPECT_TRUE(events.saw("focus lost"));
}

TEST_F(X11Test, AMenuIsUsedWithMouseAndKeys) {
    int answer = -2;
    const auto menu = events.frame->createOptionMenu();
    MenuRequest request;
    request.anchor = {20, 10, 100, 30};
    request.items = {menuItem("First", 1), menuItem("More", 2), menuItem("Last", 3)};
    request.items[1].submenu = {menuItem("Inner", 7)};
    const auto open = [&] {
        answer = -2;
        return menu->popup(request, [&](int id) { answer = id; });
    };
    // Pressed, dragged and released, beyond the frame's lower edge.
    moveIn(40, 20);
    user->button(1, true);
    idle(events);
    ASSERT_TRUE(open());
    EXPECT_FALSE(events.frame->createOptionMenu()->popup(request, [](int) {}));
    moveIn(45, 30 + 4 + 50);
    EXPECT_EQ(user->pixel(kX + 30, kY + 30 + 4 + 45), 0x423D3BU) << "the lit row";
    user->button(1, false);
    ASSERT_TRUE(idleUntil([&] { return answer != -2; }));
    EXPECT_EQ(answer, 3);
    const std::string ending = events.take();
    EXPECT_NE(ending.find("up 45,84; exit"), std::string::npos) << ending;
    EXPECT_EQ(user->pixel(kX + 30, kY + 75), 0x0AC81EU) << "the window is gone";

    // Click by click, through a sub-menu.
    ASSERT_TRUE(open());
    moveIn(45, 30 + 4 + 30);
    user->click();
    idle(events);
    const int inner = 20 + 80 + 2 + 30; // right of the first column
    moveIn(inner, 30 + 4 + 30);
    user->click();
    ASSERT_TRUE(idleUntil([&] { return answer != -2; }));
    EXPECT_EQ(answer, 7);

    // A click anywhere else is swallowed.
    ASSERT_TRUE(open());
    events.take("");
    moveIn(180, 140);
    user->click();
    ASSERT_TRUE(idleUntil([&] { return answer != -2; }));
    EXPECT_EQ(answer, -1);
    EXPECT_EQ(events.take(), "");

    // Keys of a menu are no keys of the frame.
    ASSERT_TRUE(open());
    idle(events);
    user->type(KeyCode::kUp);
    user->type(KeyCode::kReturn);
    ASSERT_TRUE(idleUntil([&] { return answer != -2; }));
    EXPECT_EQ(answer, 3);
    EXPECT_EQ(events.take(), "");
    ASSERT_TRUE(open());
    menu->cancel();
    idle(events);
    EXPECT_EQ(answer, -2);
    EXPECT_EQ(user->pixel(kX + 30, kY + 40), 0x0AC81EU);
}

TEST_F(X11Test, AWindowOfItsOwnIsNamedAndCloses) {
    Recorder own;
    open(own, XCB_NONE);
    const xcb_window_t window = windowOf(*own.frame);
    EXPECT_EQ(user->property(window, "_NET_WM_NAME"), "Title");
    EXPECT_EQ(user->property(window, "_NET_WM_ICON").size(), (2 + 48 * 48) * 4U);
    xcb_client_message_event_t close{};
    close.response_type = XCB_CLIENT_MESSAGE;
    close.format = 32;
    close.window = window;
    close.type = user->atom("WM_PROTOCOLS");
    close.data.data32[0] = user->atom("WM_DELETE_WINDOW");
    xcb_send_event(user->xcb(), 0, window, 0, reinterpret_cast<const char*>(&close));
    idle(own);
    EXPECT_TRUE(own.saw("close"));
    own.frame->release();
}

TEST_F(X11Test, TheHostMayDestroyItAtAnyMoment) {
    const auto menu = events.frame->createOptionMenu();
    MenuRequest request;
    request.items = {menuItem("Only", 1)};
    ASSERT_TRUE(menu->popup(request, [](int) { FAIL() << "nobody chose"; }));
    EditRecorder edit;
    const auto box = events.frame->createTextEdit(edit, {0, 0, 80, 12});
    box->setFocus();
    xcb_destroy_window(user->xcb(), host);
    for (int i = 0; i < 3; ++i) {
        events.frame->invalidRect({0, 0, 200, 150});
        idle(events);
    }
    EXPECT_EQ(events.frame->getPlatformHandle(), nullptr);
    EXPECT_FALSE(menu->isOpen());
    EXPECT_FALSE(menu->popup(request, [](int) {}));
    EXPECT_FALSE(events.frame->setSize(10, 10));
    EXPECT_EQ(events.frame->eventDescriptor(), -1);
    EXPECT_EQ(events.surface->getPixels()[1], 200) << "views may still draw";
}

TEST_F(X11Test, ClosingWithAnOpenMenuGivesThePointerBack) {
    const auto menu = events.frame->createOptionMenu();
    MenuRequest request;
    request.anchor = {20, 10, 100, 30};
    request.items = {menuItem("Only", 1)};
    ASSERT_TRUE(menu->popup(request, [](int) { FAIL() << "nobody chose"; }));
    idle(events);
    events.frame->destroyWindow();
    Recorder next;
    open(next, host);
    user->moveTo(kX + 30, kY + 40);
    user->click();
    idle(next);
    EXPECT_TRUE(next.saw("down 30,40 2"));
    next.frame->release();
}

TEST_F(X11Test, AnEventMayCloseTheWindow) {
    events.during = [this](const std::string& what) {
        if (what.rfind("down", 0) == 0) events.frame->destroyWindow();
    };
    moveIn(30, 40);
    events.take("");
    user->click();
    user->click();
    idle(events);
    EXPECT_EQ(events.take("enter"), "down 30,40 2");
    EXPECT_EQ(events.frame->getPlatformHandle(), nullptr);
}

TEST_F(X11Test, OpeningAndClosingAThousandTimesLeavesNothingBehind) {
    user->sync();
    const std::size_t clients = user->clientCount();
    for (int i = 0; i < 1000; ++i) {
        Recorder recorder;
        recorder.frame = x11Platform().createFrame(recorder, {0, 0, 200, 150}, handleOf(host), "");
        recorder.paint(200, 150, {1, 2, 3, 255});
        recorder.frame->invalidRect({0, 0, 200, 150});
        recorder.frame->doIdle();
        recorder.frame->release();
    }
    // The server notices the last ones a moment later.
    for (int i = 0; i < 200 && user->clientCount() > clients; ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    EXPECT_LE(user->clientCount(), clients);
}

TEST(X11Ends, WithoutADisplayEverythingAnswersNo) {
    setenv("DISPLAY", ":9999", 1);
    Recorder events;
    events.frame = x11Platform().createFrame(events, {0, 0, 200, 150}, nullptr, "");
    EXPECT_EQ(events.frame->getPlatformHandle(), nullptr);
    events.paint(200, 150, {1, 2, 3, 255});
    events.frame->invalidRect({0, 0, 200, 150});
    events.frame->setMouseCursor(CursorKind::kHand);
    events.frame->doIdle();
    EXPECT_EQ(events.idles, 0);
    EXPECT_FALSE(events.frame->createOptionMenu()->popup({}, [](int) {}));
    events.frame->release();
}

TEST(X11Ends, TheDisplayMayDie) {
    XServer server;
    if (!server.isRunning()) GTEST_SKIP() << "Xvfb is not installed (Debian package xvfb).";
    Recorder events;
    events.frame = x11Platform().createFrame(events, {0, 0, 200, 150}, nullptr, "");
    events.paint(200, 150, {1, 2, 3, 255});
    events.frame->doIdle();
    server.kill();
    for (int i = 0; i < 5; ++i) {
        events.frame->invalidRect({0, 0, 200, 150});
        events.frame->setMouseCursor(i % 2 == 0 ? CursorKind::kHand : CursorKind::kArrow);
        events.frame->doIdle();
    }
    EXPECT_EQ(events.frame->getPlatformHandle(), nullptr);
    events.frame->release();
}

} // namespace
