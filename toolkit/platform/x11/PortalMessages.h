// What is said to the desktop's file portal, and what it answers.
#pragma once

#include "platform/FileDialog.h"

#include <dbus/dbus.h>

#include <memory>

namespace Sorel {

struct DBusMessageFree {
    void operator()(DBusMessage* message) const { dbus_message_unref(message); }
};
using DBusMessageOwned = std::unique_ptr<DBusMessage, DBusMessageFree>;

/// The call that opens the dialog. `token` names the request; `parentWindow` is an X11 window.
DBusMessageOwned portalOpenCall(const FileDialogRequest& request,
                                std::uint32_t parentWindow,
                                const std::string& token);
/// The paths in a Response signal. False when the portal says that it failed; an empty list when
/// the user gave up.
bool readPortalResponse(DBusMessage* response, FileDialogAnswer& answer);

} // namespace Sorel
