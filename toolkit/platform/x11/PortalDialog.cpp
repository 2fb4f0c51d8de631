// File dialogs of the desktop's portal, over D-Bus, without ever waiting for it.
#include "x11/PortalMessages.h"
#include "x11/X11FileDialog.h"

#include <dbus/dbus.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>

namespace Sorel {

namespace {

struct ConnectionClose {
    void operator()(DBusConnection* connection) const {
        dbus_connection_close(connection);
        dbus_connection_unref(connection);
    }
};

/// Where the session's bus listens; empty when there is none. Nothing is started for it.
std::string sessionBusAddress() {
    // NOLINTNEXTLINE(concurrency-mt-unsafe): nobody changes the environment of a running host
    if (const char* address = std::getenv("DBUS_SESSION_BUS_ADDRESS");
        address != nullptr && *address != 0)
        return std::string(address).starts_with("autolaunch:") ? std::string() : address;
    // NOLINTNEXTLINE(concurrency-mt-unsafe): nobody changes the environment of a running host
    if (const char* folder = std::getenv("XDG_RUNTIME_DIR"); folder != nullptr) {
        const std::string socket = std::string(folder) + "/bus";
        if (access(socket.c_str(), R_OK | W_OK) == 0) return "unix:path=" + socket;
    }
    return {};
}

class PortalDialog : public X11DialogBackend {
  public:
    PortalDialog(DBusConnection* connection,
                 const FileDialogRequest& request,
                 std::uint32_t parentWindow);
    ~PortalDialog() override;

    State poll(FileDialogAnswer& answer) override;

  private:
    void handle(DBusMessage* message, FileDialogAnswer& answer);
    void onHello(DBusMessage* reply);
    void onOpened(DBusMessage* reply);
    std::uint32_t send(DBusMessageOwned message);

    std::unique_ptr<DBusConnection, ConnectionClose> connection_;
    FileDialogRequest request_;
    std::uint32_t parentWindow_;
    State state_ = State::kRunning;
    std::uint32_t helloSerial_ = 0;
    std::uint32_t openSerial_ = 0;
    std::string requestPath_; // of the dialog, once the portal has it
};

PortalDialog::PortalDialog(DBusConnection* connection,
                           const FileDialogRequest& request,
                           std::uint32_t parentWindow)
    : connection_(connection)
    , request_(request)
    , parentWindow_(parentWindow) {
    // A bus that goes away must not end the host.
    dbus_connection_set_exit_on_disconnect(connection, 0);
    helloSerial_ = send(DBusMessageOwned(dbus_message_new_method_call(
        DBUS_SERVICE_DBUS, DBUS_PATH_DBUS, DBUS_INTERFACE_DBUS, "Hello")));
}

PortalDialog::~PortalDialog() {
    if (state_ != State::kRunning || requestPath_.empty()) return;
    DBusMessageOwned close(dbus_message_new_method_call("org.freedesktop.portal.Desktop",
                                                        requestPath_.c_str(),
                                                        "org.freedesktop.portal.Request", "Close"));
    dbus_message_set_no_reply(close.get(), 1);
    send(std::move(close));
    dbus_connection_read_write(connection_.get(), 0);
}

std::uint32_t PortalDialog::send(DBusMessageOwned message) {
    dbus_uint32_t serial = 0;
    if (message) dbus_connection_send(connection_.get(), message.get(), &serial);
    return serial;
}

X11DialogBackend::State PortalDialog::poll(FileDialogAnswer& answer) {
    if (state_ != State::kRunning) return state_;
    dbus_connection_read_write(connection_.get(), 0);
    while (state_ == State::kRunning) {
        // The status has to be asked for: that is what parses the bytes.
        const bool more =
            dbus_connection_get_dispatch_status(connection_.get()) == DBUS_DISPATCH_DATA_REMAINS;
        const DBusMessageOwned message(more ? dbus_connection_pop_message(connection_.get())
                                            : nullptr);
        if (!message) break;
        handle(message.get(), answer);
    }
    dbus_connection_read_write(connection_.get(), 0);
    const bool connected = dbus_connection_get_is_connected(connection_.get()) != 0;
    if (state_ == State::kRunning && !connected) state_ = State::kUnavailable;
    return state_;
}

void PortalDialog::handle(DBusMessage* message, FileDialogAnswer& answer) {
    const int type = dbus_message_get_type(message);
    const dbus_uint32_t serial = dbus_message_get_reply_serial(message);
    if (dbus_message_is_signal(message, DBUS_INTERFACE_LOCAL, "Disconnected") != 0 ||
        (type == DBUS_MESSAGE_TYPE_ERROR && (serial == helloSerial_ || serial == openSerial_))) {
        state_ = State::kUnavailable;
    } else if (type == DBUS_MESSAGE_TYPE_METHOD_RETURN && serial == helloSerial_) {
        onHello(message);
    } else if (type == DBUS_MESSAGE_TYPE_METHOD_RETURN && serial == openSerial_) {
        onOpened(message);
    } else if (dbus_message_is_signal(message, "org.freedesktop.portal.Request", "Response") != 0 &&
               dbus_message_has_path(message, requestPath_.c_str()) != 0) {
        if (!readPortalResponse(message, answer))
            answer.problem = "The desktop's file dialog ended with an error.";
        state_ = State::kAnswered;
    }
}

void PortalDialog::onHello(DBusMessage* reply) {
    const char* name = nullptr;
    if (dbus_message_get_args(reply, nullptr, DBUS_TYPE_STRING, &name, DBUS_TYPE_INVALID) == 0) {
        state_ = State::kUnavailable;
        return;
    }
    dbus_bus_set_unique_name(connection_.get(), name);
    // The answer's path is known beforehand: ":1.42" becomes "1_42".
    const std::string token = "orvel" + std::to_string(getpid());
    std::string sender = std::string(name).substr(1);
    std::replace(sender.begin(), sender.end(), '.', '_');
    requestPath_ = "/org/freedesktop/portal/desktop/request/" + sender + "/" + token;

    const std::string rule = "type='signal',interface='org.freedesktop.portal.Request',"
                             "member='Response'";
    const char* ruleText = rule.c_str();
    DBusMessageOwned match(dbus_message_new_method_call(DBUS_SERVICE_DBUS, DBUS_PATH_DBUS,
                                                        DBUS_INTERFACE_DBUS, "AddMatch"));
    dbus_message_append_args(match.get(), DBUS_TYPE_STRING, &ruleText, DBUS_TYPE_INVALID);
    dbus_message_set_no_reply(match.get(), 1);
    send(std::move(match));
    openSerial_ = send(portalOpenCall(request_, parentWindow_, token));
}

void PortalDialog::onOpened(DBusMessage* reply) {
    // Old portals choose another path.
    const char* path = nullptr;
    if (dbus_message_get_args(reply, nullptr, DBUS_TYPE_OBJECT_PATH, &path, DBUS_TYPE_INVALID) != 0)
        requestPath_ = path;
}

} // namespace

std::unique_ptr<X11DialogBackend> openPortalDialog(const FileDialogRequest& request,
                                                   std::uint32_t parentWindow) {
    const std::string address = sessionBusAddress();
    if (address.empty()) return nullptr;
    DBusConnection* connection = dbus_connection_open_private(address.c_str(), nullptr);
    if (connection == nullptr) return nullptr;
    return std::make_unique<PortalDialog>(connection, request, parentWindow);
}

} // namespace Sorel
