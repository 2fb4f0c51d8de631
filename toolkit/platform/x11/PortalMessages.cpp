// What is said to the desktop's file portal, and what it answers.
#include "x11/PortalMessages.h"

#include "x11/UriList.h"

#include <array>
#include <cstdio>

namespace Sorel {

namespace {

/// Appends values to a message. Memory that runs out ends the program, as everywhere.
class Writer {
  public:
    explicit Writer(DBusMessage* message) { dbus_message_iter_init_append(message, &iter_); }
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;
    ~Writer() {
        if (outer_ != nullptr) dbus_message_iter_close_container(outer_, &iter_);
    }

    /// A container in this one, open until it is destroyed. `contents` is its signature, null for
    /// structures and dictionary entries.
    Writer inside(int type, const char* contents) { return {*this, type, contents}; }

    void text(const std::string& utf8) {
        const char* characters = utf8.c_str();
        dbus_message_iter_append_basic(&iter_, DBUS_TYPE_STRING, &characters);
    }
    void boolean(bool value) {
        const dbus_bool_t word = value ? 1 : 0;
        dbus_message_iter_append_basic(&iter_, DBUS_TYPE_BOOLEAN, &word);
    }
    void number(std::uint32_t value) {
        dbus_message_iter_append_basic(&iter_, DBUS_TYPE_UINT32, &value);
    }
    void byte(char value) { dbus_message_iter_append_basic(&iter_, DBUS_TYPE_BYTE, &value); }

  private:
    Writer(Writer& outer, int type, const char* contents)
        : outer_(&outer.iter_) {
        dbus_message_iter_open_container(outer_, type, contents, &iter_);
    }

    DBusMessageIter iter_{};
    DBusMessageIter* outer_ = nullptr;
};

/// One entry of an a{sv}; `write` appends the value of this signature.
template <class Write>
void option(Writer& options, const char* name, const char* signature, Write write) {
    Writer entry = options.inside(DBUS_TYPE_DICT_ENTRY, nullptr);
    entry.text(name);
    Writer value = entry.inside(DBUS_TYPE_VARIANT, signature);
    write(value);
}

void appendFilters(Writer& value, const FileDialogRequest& request) {
    Writer filters = value.inside(DBUS_TYPE_ARRAY, "(sa(us))");
    for (const FileDialogRequest::Extension& kind : request.extensions) {
        Writer filter = filters.inside(DBUS_TYPE_STRUCT, nullptr);
        filter.text(kind.description);
        Writer rules = filter.inside(DBUS_TYPE_ARRAY, "(us)");
        Writer rule = rules.inside(DBUS_TYPE_STRUCT, nullptr);
        rule.number(0); // a pattern of names
        rule.text("*." + kind.extension);
    }
}

std::string defaultTitle(FileDialogRequest::Style style) {
    switch (style) {
    case FileDialogRequest::Style::kSave:
        return "Save File";
    case FileDialogRequest::Style::kFolder:
        return "Select a folder";
    case FileDialogRequest::Style::kOpen:
        break;
    }
    return "Open File";
}

void appendOptions(Writer& options, const FileDialogRequest& request, const std::string& token) {
    using Style = FileDialogRequest::Style;
    option(options, "handle_token", "s", [&](Writer& value) { value.text(token); });
    if (request.style == Style::kOpen && request.multiSelect)
        option(options, "multiple", "b", [](Writer& value) { value.boolean(true); });
    if (request.style == Style::kFolder)
        option(options, "directory", "b", [](Writer& value) { value.boolean(true); });
    if (request.style != Style::kFolder && !request.extensions.empty())
        option(options, "filters", "a(sa(us))",
               [&](Writer& value) { appendFilters(value, request); });
    if (request.style == Style::kSave && !request.defaultSaveName.empty())
        option(options, "current_name", "s",
               [&](Writer& value) { value.text(request.defaultSaveName); });
    if (!request.initialPath.empty())
        option(options, "current_folder", "ay", [&](Writer& value) {
            Writer bytes = value.inside(DBUS_TYPE_ARRAY, "y");
            for (const char c : request.initialPath)
                bytes.byte(c);
            bytes.byte(0);
        });
}

/// Moves into what the iterator stands on.
DBusMessageIter into(DBusMessageIter& outer) {
    DBusMessageIter inner;
    dbus_message_iter_recurse(&outer, &inner);
    return inner;
}

std::string textAt(DBusMessageIter& iter) {
    if (dbus_message_iter_get_arg_type(&iter) != DBUS_TYPE_STRING) return {};
    const char* text = nullptr;
    dbus_message_iter_get_basic(&iter, &text);
    return text;
}

void readUris(DBusMessageIter value, FileDialogAnswer& answer) {
    if (dbus_message_iter_get_arg_type(&value) != DBUS_TYPE_ARRAY) return;
    for (DBusMessageIter uri = into(value);
         dbus_message_iter_get_arg_type(&uri) == DBUS_TYPE_STRING; dbus_message_iter_next(&uri)) {
        std::string path = pathOfUri(textAt(uri));
        if (!path.empty()) answer.paths.push_back(std::move(path));
    }
}

} // namespace

DBusMessageOwned portalOpenCall(const FileDialogRequest& request,
                                std::uint32_t parentWindow,
                                const std::string& token) {
    const bool save = request.style == FileDialogRequest::Style::kSave;
    DBusMessageOwned call(dbus_message_new_method_call(
        "org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop",
        "org.freedesktop.portal.FileChooser", save ? "SaveFile" : "OpenFile"));
    std::array<char, 32> parent{};
    if (parentWindow != 0) std::snprintf(parent.data(), parent.size(), "x11:%x", parentWindow);
    Writer arguments(call.get());
    arguments.text(parent.data());
    arguments.text(request.title.empty() ? defaultTitle(request.style) : request.title);
    Writer options = arguments.inside(DBUS_TYPE_ARRAY, "{sv}");
    appendOptions(options, request, token);
    return call;
}

bool readPortalResponse(DBusMessage* response, FileDialogAnswer& answer) {
    DBusMessageIter iter;
    if (dbus_message_iter_init(response, &iter) == 0 ||
        dbus_message_iter_get_arg_type(&iter) != DBUS_TYPE_UINT32)
        return false;
    std::uint32_t code = 0;
    dbus_message_iter_get_basic(&iter, &code);
    if (code == 1) return true; // the user gave up
    if (code != 0 || dbus_message_iter_next(&iter) == 0 ||
        dbus_message_iter_get_arg_type(&iter) != DBUS_TYPE_ARRAY)
        return false;
    for (DBusMessageIter entry = into(iter);
         dbus_message_iter_get_arg_type(&entry) == DBUS_TYPE_DICT_ENTRY;
         dbus_message_iter_next(&entry)) {
        DBusMessageIter pair = into(entry);
        const std::string name = textAt(pair);
        dbus_message_iter_next(&pair);
        if (name == "uris" && dbus_message_iter_get_arg_type(&pair) == DBUS_TYPE_VARIANT)
            readUris(into(pair), answer);
    }
    return true;
}

} // namespace Sorel
