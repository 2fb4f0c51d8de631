// What the X11 window exchanges with other programs: clipboard, drags, file dialogs.
#include "X11Fixture.h"
#include "x11/UriList.h"

#include <filesystem>
#include <fstream>

using namespace Sorel;

namespace {

class X11ExchangeTest : public X11Fixture {
  protected:
    void SetUp() override {
        X11Fixture::SetUp();
        if (user) other = user->hostWindow(600, 10, 50, 50);
    }

    // ---- The other program: owns a selection and answers requests for it ------------------------
    void
    own(const std::string& selection, std::string data, std::string kind, std::size_t piece = 0) {
        served = {std::move(data), std::move(kind), piece};
        xcb_set_selection_owner(user->xcb(), other, user->atom(selection), XCB_CURRENT_TIME);
        user->sync();
    }
    void serve() override {
        while (xcb_generic_event_t* event = xcb_poll_for_event(user->xcb())) {
            if ((event->response_type & 0x7F) == XCB_SELECTION_REQUEST)
                answer(*reinterpret_cast<xcb_selection_request_event_t*>(event));
            if ((event->response_type & 0x7F) == XCB_CLIENT_MESSAGE)
                messages.push_back(*reinterpret_cast<xcb_client_message_event_t*>(event));
            if ((event->response_type & 0x7F) == XCB_PROPERTY_NOTIFY)
                sendPiece(*reinterpret_cast<xcb_property_notify_event_t*>(event));
            std::free(event);
        }
    }
    void answer(const xcb_selection_request_event_t& request) {
        xcb_selection_notify_event_t notify{};
        notify.response_type = XCB_SELECTION_NOTIFY;
        notify.requestor = request.requestor;
        notify.selection = request.selection;
        notify.target = request.target;
        notify.time = request.time;
        if (request.target == user->atom(served.kind)) {
            notify.property = request.property;
            const auto size = static_cast<std::uint32_t>(served.data.size());
            if (served.piece > 0) {
                const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
                xcb_change_window_attributes(user->xcb(), request.requestor, XCB_CW_EVENT_MASK,
                                             &mask);
                put(request.requestor, request.property, user->atom("INCR"), 32, &size, 1);
            } else {
                put(request.requestor, request.property, request.target, 8, served.data.data(),
                    size);
            }
        }
        xcb_send_event(user->xcb(), 0, request.requestor, 0,
                       reinterpret_cast<const char*>(&notify));
        user->sync();
    }
    void sendPiece(const xcb_property_notify_event_t& event) {
        if (event.state != XCB_PROPERTY_DELETE || served.piece == 0) return;
        const std::string piece = served.data.substr(0, served.piece);
        served.data.erase(0, piece.size());
        put(event.window, event.atom, user->atom(served.kind), 8, piece.data(),
            static_cast<std::uint32_t>(piece.size()));
        if (piece.empty()) served.piece = 0;
        user->sync();
    }
    void put(xcb_window_t window,
             xcb_atom_t property,
             xcb_atom_t type,
             int bits,
             const void* data,
             std::uint32_t count) const {
        xcb_change_property(user->xcb(), XCB_PROP_MODE_REPLACE, window, property, type,
                            static_cast<std::uint8_t>(bits), count, data);
    }
    /// The window's own text; the server has seen it afterwards.
    static void offer(Recorder& recorder, const std::string& text) {
        recorder.frame->setClipboardText(text);
        double x = 0.0;
        double y = 0.0;
        recorder.frame->getPosition(&x, &y);
    }
    std::string pasted() {
        std::string got = "nothing";
        bool came = false;
        events.frame->requestClipboardText([&](const std::string& text) {
            got = text;
            came = true;
        });
        EXPECT_TRUE(idleUntil([&] { return came; }));
        return got;
    }

    // ---- The source of a drag -------------------------------------------------------------------
    xcb_window_t target() const { return windowOf(*events.frame); }
    void sendDrag(const std::string& type, std::array<std::uint32_t, 4> data) const {
        xcb_client_message_event_t message{};
        message.response_type = XCB_CLIENT_MESSAGE;
        message.format = 32;
        message.window = target();
        message.type = user->atom(type);
        message.data.data32[0] = other;
        std::copy(data.begin(), data.end(), &message.data.data32[1]);
        xcb_send_event(user->xcb(), 0, target(), 0, reinterpret_cast<const char*>(&message));
        user->sync();
    }
    void dragTo(std::uint32_t x, std::uint32_t y) {
        messages.clear();
        sendDrag("XdndPosition", {0, x << 16 | y, XCB_CURRENT_TIME, user->atom("XdndActionCopy")});
        ASSERT_TRUE(idleUntil([&] { return !messages.empty(); }));
        EXPECT_EQ(messages[0].type, user->atom("XdndStatus"));
    }

    struct Served {
        std::string data;
        std::string kind;
        std::size_t piece = 0; // 0: all at once
    };
    xcb_window_t other = XCB_NONE;
    Served served;
    std::vector<xcb_client_message_event_t> messages;
};

TEST_F(X11ExchangeTest, TextGoesFromOneWindowToAnother) {
    Recorder second;
    second.frame = x11Platform().createFrame(second, {0, 0, 50, 50}, nullptr, "");
    offer(second, "L\u00E4rm \u20AC");
    std::string got;
    events.frame->requestClipboardText([&](const std::string& text) { got = text; });
    idleUntil([&] {
        second.frame->doIdle();
        return !got.empty();
    });
    EXPECT_EQ(got, "L\u00E4rm \u20AC");
    offer(events, "mine");
    second.frame->doIdle();
    EXPECT_EQ(pasted(), "mine");
    second.frame->release();
}

TEST_F(X11ExchangeTest, TextOfOthersComesWholeInPiecesOrNotAtAll) {
    offer(events, "mine");
    own("CLIPBOARD", "plain", "UTF8_STRING");
    events.frame->doIdle();
    EXPECT_EQ(pasted(), "plain");
    own("CLIPBOARD", "\xE4", "STRING");
    EXPECT_EQ(pasted(), "\u00E4");
    own("CLIPBOARD", std::string(10000, 'x'), "UTF8_STRING", 3000);
    EXPECT_EQ(pasted(), std::string(10000, 'x'));
    own("CLIPBOARD", "picture", "image/png");
    EXPECT_EQ(pasted(), "");
    own("CLIPBOARD", std::string(100000, 'x'), "UTF8_STRING");
    EXPECT_EQ(pasted(), "") << "too much";
    own("CLIPBOARD", std::string(100000, 'x'), "UTF8_STRING", 30000);
    EXPECT_EQ(pasted(), "") << "too much, in pieces";
}

TEST_F(X11ExchangeTest, FilesAreDroppedAtTheirPlace) {
    EXPECT_EQ(user->property(target(), "XdndAware"), std::string("\5\0\0\0", 4));
    own("XdndSelection", "# from\r\nfile:///tmp/a%20b.wav\r\nfile://localhost/c\r\nhttp://x/y\r\n",
        "text/uri-list");
    sendDrag("XdndEnter", {5U << 24, user->atom("text/plain"), user->atom("text/uri-list"), 0});
    dragTo(130, 100);
    EXPECT_EQ(messages[0].data.data32[1] & 1, 1U);
    EXPECT_EQ(events.take(), "drag enter /tmp/a b.wav 30,20; drag move 30,20");
    dragTo(140, 100);
    messages.clear();
    sendDrag("XdndDrop", {0, XCB_CURRENT_TIME, 0, 0});
    ASSERT_TRUE(idleUntil([&] { return !messages.empty(); }));
    EXPECT_EQ(messages[0].type, user->atom("XdndFinished"));
    EXPECT_EQ(messages[0].data.data32[1], 1U);
    EXPECT_EQ(events.take(), "drag move 40,20; drop of 2 40,20");

    // Unwanted, of an unknown kind, or from a program that dies.
    events.acceptDrops = false;
    sendDrag("XdndEnter", {5U << 24, user->atom("text/uri-list"), 0, 0});
    dragTo(130, 100);
    EXPECT_EQ(messages[0].data.data32[1] & 1, 0U);
    sendDrag("XdndLeave", {0, 0, 0, 0});
    ASSERT_TRUE(idleUntil([&] { return events.saw("drag leave"); }));
    events.take();
    sendDrag("XdndEnter", {5U << 24, user->atom("image/png"), 0, 0});
    dragTo(130, 100);
    EXPECT_EQ(messages[0].data.data32[1] & 1, 0U);
    EXPECT_EQ(events.take(), "");
    sendDrag("XdndEnter", {5U << 24, user->atom("text/uri-list"), 0, 0});
    dragTo(130, 100);
    xcb_destroy_window(user->xcb(), other);
    user->sync();
    EXPECT_TRUE(idleUntil([&] { return events.saw("drag leave"); }));
}

TEST(UriList, NamesFilesOfThisMachineOnly) {
    EXPECT_EQ(pathOfUri("file:/a"), "/a");
    EXPECT_EQ(pathOfUri("file:///%C3%A4%2"), "/\u00E4%2");
    for (const char* other : {"file://elsewhere/a", "file:a", "http:///a", "", "file:///a%00b"})
        EXPECT_EQ(pathOfUri(other), "") << other;
    EXPECT_EQ(pathsOfUriList("\r\n#x\nfile:///b\n\nfile:///c").size(), 2U);
}

// ---- File dialogs ------------------------------------------------------------------------------

class X11DialogTest : public X11ExchangeTest {
  protected:
    void SetUp() override {
        X11ExchangeTest::SetUp();
        folder =
            std::filesystem::temp_directory_path() / ("orvel-dialog-" + std::to_string(getpid()));
        std::filesystem::create_directories(folder);
        path = std::getenv("PATH");
        unsetenv("DBUS_SESSION_BUS_ADDRESS");
        unsetenv("XDG_RUNTIME_DIR");
        setenv("PATH", folder.c_str(), 1);
        setenv("DIALOG_LOG", (folder / "log").c_str(), 1);
    }
    void TearDown() override {
        if (!user) return;
        setenv("PATH", path.c_str(), 1);
        std::filesystem::remove_all(folder);
        X11ExchangeTest::TearDown();
    }
    /// A program of this name that does this.
    void program(const std::string& name, const std::string& script) const {
        const std::filesystem::path file = folder / name;
        std::ofstream(file) << "#!/bin/sh\nprintf '%s|' \"$0\" \"$@\" >> \"$DIALOG_LOG\"\n"
                            << script;
        std::filesystem::permissions(file, std::filesystem::perms::owner_all);
    }
    FileDialogAnswer ask(const FileDialogRequest& request) {
        FileDialogAnswer result;
        bool came = false;
        const auto dialog = events.frame->createFileDialog();
        dialog->run(request, [&](const FileDialogAnswer& answer) {
            result = answer;
            came = true;
        });
        EXPECT_TRUE(idleUntil([&] { return came; }));
        EXPECT_FALSE(dialog->isOpen());
        return result;
    }
    std::string log() const {
        std::ifstream file(folder / "log");
        return {std::istreambuf_iterator<char>(file), {}};
    }

    std::filesystem::path folder;
    std::string path;
};

TEST_F(X11DialogTest, HelperProgramsAnswerAndGiveUp) {
    FileDialogRequest request;
    request.title = "Load";
    request.multiSelect = true;
    request.extensions = {{"Wave file", "wav", "audio/wav"}};
    program("zenity", "printf '/a b\\n/c\\nd\\n'\n");
    EXPECT_EQ(ask(request).paths, (std::vector<std::string>{"/a b", "/c\nd"}));
    EXPECT_NE(log().find("--file-filter=Wave file (*.wav) | *.wav|"), std::string::npos) << log();
    program("zenity", "exit 1\n");
    EXPECT_TRUE(ask(request).paths.empty());
    EXPECT_EQ(ask(request).problem, "");
    program("zenity", "exit 255\n");
    EXPECT_NE(ask(request).problem.find("zenity"), std::string::npos);
    std::filesystem::remove(folder / "zenity");
    request.style = FileDialogRequest::Style::kSave;
    request.initialPath = "/tmp";
    request.defaultSaveName = "x.wav";
    program("kdialog", "echo /tmp/x.wav\n");
    EXPECT_EQ(ask(request).paths, std::vector<std::string>{"/tmp/x.wav"});
    EXPECT_NE(log().find("--getsavefilename|/tmp/x.wav|Wave file (*.wav)|"), std::string::npos);
    std::filesystem::remove(folder / "kdialog");
    EXPECT_NE(ask(request).problem.find("No file dialog could be opened"), std::string::npos);
}

TEST_F(X11DialogTest, ClosingTheWindowEndsTheProgram) {
    program("zenity", "echo $$ > \"$DIALOG_LOG.pid\"\nexec /bin/sleep 60\n");
    const auto dialog = events.frame->createFileDialog();
    dialog->run({}, [](const FileDialogAnswer&) { FAIL() << "cancelled"; });
    const std::filesystem::path pidFile = folder / "log.pid";
    ASSERT_TRUE(idleUntil([&] {
        return std::filesystem::exists(pidFile) && std::filesystem::file_size(pidFile) > 1;
    }));
    int pid = 0;
    std::ifstream(pidFile) >> pid;
    events.frame->destroyWindow();
    EXPECT_FALSE(dialog->isOpen());
    EXPECT_NE(kill(pid, 0), 0);
}

} // namespace
