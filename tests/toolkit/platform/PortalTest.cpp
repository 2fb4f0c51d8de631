// File dialogs of the desktop's portal: a bus of the test's own with a small portal on it.
#include "x11/X11FileDialog.h"

#include <dbus/dbus.h>
#include <gtest/gtest.h>
#include <signal.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <thread>

using namespace Sorel;

namespace {

/// Plays org.freedesktop.portal.Desktop on a private bus.
class FakePortal {
  public:
    FakePortal() {
        bus_ = popen(
            "exec dbus-daemon --session --nofork --print-address=1 --print-pid=1 2>/dev/null", "r");
        char line[512] = "";
        char number[32] = "";
        if (bus_ == nullptr || std::fgets(line, sizeof line, bus_) == nullptr ||
            std::fgets(number, sizeof number, bus_) == nullptr)
            return;
        pid_ = std::atoi(number);
        address = std::string(line).substr(0, std::string(line).find('\n'));
        connection_ = dbus_connection_open_private(address.c_str(), nullptr);
        if (connection_ == nullptr || dbus_bus_register(connection_, nullptr) == 0) address.clear();
    }
    ~FakePortal() {
        if (connection_ != nullptr) {
            dbus_connection_close(connection_);
            dbus_connection_unref(connection_);
        }
        if (pid_ > 0) kill(pid_, SIGTERM); // the bus is ours
        if (bus_ != nullptr) pclose(bus_);
    }
    FakePortal(const FakePortal&) = delete;
    FakePortal& operator=(const FakePortal&) = delete;

    void takeName() const {
        dbus_bus_request_name(connection_, "org.freedesktop.portal.Desktop", 0, nullptr);
    }
    /// Answers calls with `response` and `uri`.
    void serve() {
        dbus_connection_read_write(connection_, 0);
        dbus_connection_get_dispatch_status(connection_);
        while (DBusMessage* message = dbus_connection_pop_message(connection_)) {
            if (dbus_message_get_type(message) == DBUS_MESSAGE_TYPE_METHOD_CALL) answer(message);
            dbus_message_unref(message);
        }
        dbus_connection_read_write(connection_, 0);
    }

    std::string address; // empty when there is no bus
    std::string log;
    std::uint32_t response = 0;
    bool silent = false; // keeps the dialog open
    const char* uri = "file:///tmp/a%20b.wav";

  private:
    void answer(DBusMessage* call) {
        log += std::string(dbus_message_get_member(call)) + "(" + dbus_message_get_signature(call) +
               ") ";
        if (dbus_message_is_method_call(call, "org.freedesktop.portal.Request", "Close") != 0)
            return;
        const char* parent = nullptr;
        const char* title = nullptr;
        dbus_message_get_args(call, nullptr, DBUS_TYPE_STRING, &parent, DBUS_TYPE_STRING, &title,
                              DBUS_TYPE_INVALID);
        log += std::string(parent) + " " + title + " ";
        const char* path = "/org/freedesktop/portal/desktop/request/own/path";
        DBusMessage* reply = dbus_message_new_method_return(call);
        dbus_message_append_args(reply, DBUS_TYPE_OBJECT_PATH, &path, DBUS_TYPE_INVALID);
        dbus_connection_send(connection_, reply, nullptr);
        dbus_message_unref(reply);
        if (!silent) respond(path);
    }
    void respond(const char* path) {
        DBusMessage* signal =
            dbus_message_new_signal(path, "org.freedesktop.portal.Request", "Response");
        DBusMessageIter top;
        DBusMessageIter results;
        DBusMessageIter entry;
        DBusMessageIter variant;
        DBusMessageIter uris;
        const char* key = "uris";
        dbus_message_iter_init_append(signal, &top);
        dbus_message_iter_append_basic(&top, DBUS_TYPE_UINT32, &response);
        dbus_message_iter_open_container(&top, DBUS_TYPE_ARRAY, "{sv}", &results);
        dbus_message_iter_open_container(&results, DBUS_TYPE_DICT_ENTRY, nullptr, &entry);
        dbus_message_iter_append_basic(&entry, DBUS_TYPE_STRING, &key);
        dbus_message_iter_open_container(&entry, DBUS_TYPE_VARIANT, "as", &variant);
        dbus_message_iter_open_container(&variant, DBUS_TYPE_ARRAY, "s", &uris);
        dbus_message_iter_append_basic(&uris, DBUS_TYPE_STRING, &uri);
        dbus_message_iter_close_container(&variant, &uris);
        dbus_message_iter_close_container(&entry, &variant);
        dbus_message_iter_close_container(&results, &entry);
        dbus_message_iter_close_container(&top, &results);
        dbus_connection_send(connection_, signal, nullptr);
        dbus_message_unref(signal);
    }

    std::FILE* bus_ = nullptr;
    pid_t pid_ = 0;
    DBusConnection* connection_ = nullptr;
};

TEST(PortalDialog, AsksAnswersGivesUpAndCloses) {
    FakePortal portal;
    if (portal.address.empty())
        GTEST_SKIP() << "dbus-daemon is not installed: no bus to test with.";
    setenv("DBUS_SESSION_BUS_ADDRESS", portal.address.c_str(), 1);
    FileDialogRequest request;
    request.title = "Load";
    request.multiSelect = true;
    request.initialPath = "/tmp";
    request.extensions = {{"Wave file", "wav", "audio/wav"}};
    FileDialogAnswer answer;
    std::unique_ptr<X11DialogBackend> dialog;
    const auto run = [&] {
        answer = {};
        dialog = openPortalDialog(request, 0x1234);
        auto state = X11DialogBackend::State::kRunning;
        for (int i = 0; i < 400 && state == X11DialogBackend::State::kRunning; ++i) {
            const auto before = std::chrono::steady_clock::now();
            state = dialog->poll(answer);
            EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::milliseconds(100));
            portal.serve();
            if (portal.silent && !portal.log.empty()) break;
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
        return state;
    };
    EXPECT_EQ(run(), X11DialogBackend::State::kUnavailable) << "a bus without a portal";
    portal.takeName();
    EXPECT_EQ(run(), X11DialogBackend::State::kAnswered);
    EXPECT_EQ(answer.paths, std::vector<std::string>{"/tmp/a b.wav"});
    EXPECT_EQ(portal.log, "OpenFile(ssa{sv}) x11:1234 Load ");
    request.style = FileDialogRequest::Style::kSave;
    request.defaultSaveName = "x.wav";
    portal.response = 1;
    EXPECT_EQ(run(), X11DialogBackend::State::kAnswered);
    EXPECT_TRUE(answer.paths.empty() && answer.problem.empty());
    portal.response = 2;
    EXPECT_EQ(run(), X11DialogBackend::State::kAnswered);
    EXPECT_NE(answer.problem, "");
    // An open dialog goes with the object.
    portal.log.clear();
    portal.silent = true;
    EXPECT_EQ(run(), X11DialogBackend::State::kRunning);
    dialog->poll(answer);
    dialog.reset();
    for (int i = 0; i < 100 && portal.log.find("Close") == std::string::npos; ++i) {
        portal.serve();
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    EXPECT_NE(portal.log.find("Close()"), std::string::npos) << portal.log;
}

} // namespace
