// The clipboard.
#include "x11/X11Clipboard.h"

#include "core/Utf8.h"

namespace Sorel {

namespace Utf8 = Core::Utf8;

namespace {

/// What the old kind STRING holds: Latin-1.
std::string toLatin1(const std::string& utf8) {
    std::string latin1;
    for (std::size_t at = 0; at < utf8.size();) {
        const Utf8::Decoded next = Utf8::decode(utf8, at);
        latin1.push_back(next.code < 0x100 ? static_cast<char>(next.code) : '?');
        at += next.length;
    }
    return latin1;
}

std::string fromLatin1(const std::string& latin1) {
    std::string utf8;
    for (const char byte : latin1)
        Utf8::append(utf8, static_cast<unsigned char>(byte));
    return utf8;
}

} // namespace

X11Clipboard::X11Clipboard(const X11Connection& connection, xcb_window_t window)
    : connection_(connection)
    , window_(window)
    , reader_(connection,
              window,
              connection.atom(X11Atom::kClipboard),
              connection.atom(X11Atom::kClipboardProperty)) {}

void X11Clipboard::setText(const std::string& utf8, xcb_timestamp_t time) {
    text_ = utf8.substr(0, Utf8::boundaryAtOrBefore(utf8, X11SelectionReader::kMaxBytes));
    owned_ = true;
    ownedSince_ = time;
    xcb_set_selection_owner(connection_.xcb(), window_, connection_.atom(X11Atom::kClipboard),
                            time);
    connection_.flush();
}

void X11Clipboard::requestText(xcb_timestamp_t time,
                               std::uint64_t now,
                               std::function<void(const std::string&)> answer) {
    if (owned_) return answer(text_);
    reader_.start(connection_.atom(X11Atom::kUtf8String), time, now,
                  [this, time, now, answer = std::move(answer)](bool ok, const std::string& utf8) {
                      if (ok) return answer(utf8);
                      // Old programs know only Latin-1.
                      reader_.start(XCB_ATOM_STRING, time, now,
                                    [answer](bool, const std::string& latin1) {
                                        answer(fromLatin1(latin1));
                                    });
                  });
}

bool X11Clipboard::onEvent(const xcb_generic_event_t& event, std::uint64_t now) {
    const xcb_atom_t clipboard = connection_.atom(X11Atom::kClipboard);
    switch (event.response_type & 0x7F) {
    case XCB_SELECTION_REQUEST: {
        const auto& request = reinterpret_cast<const xcb_selection_request_event_t&>(event);
        if (request.selection != clipboard) return false;
        serve(request);
        return true;
    }
    case XCB_SELECTION_CLEAR:
        if (reinterpret_cast<const xcb_selection_clear_event_t&>(event).selection != clipboard)
            return false;
        owned_ = false;
        text_.clear();
        return true;
    case XCB_SELECTION_NOTIFY: {
        const auto& notify = reinterpret_cast<const xcb_selection_notify_event_t&>(event);
        if (notify.selection != clipboard) return false;
        reader_.onSelectionNotify(notify, now);
        return true;
    }
    case XCB_PROPERTY_NOTIFY:
        reader_.onPropertyNotify(reinterpret_cast<const xcb_property_notify_event_t&>(event), now);
        return false;
    default:
        return false;
    }
}

void X11Clipboard::serve(const xcb_selection_request_event_t& request) {
    // Old programs leave the property open.
    const xcb_atom_t property = request.property != XCB_NONE ? request.property : request.target;
    xcb_selection_notify_event_t answer{};
    answer.response_type = XCB_SELECTION_NOTIFY;
    answer.time = request.time;
    answer.requestor = request.requestor;
    answer.selection = request.selection;
    answer.target = request.target;
    answer.property =
        owned_ && convert(request.requestor, property, request.target) ? property : XCB_NONE;
    xcb_send_event(connection_.xcb(), 0, request.requestor, 0,
                   reinterpret_cast<const char*>(&answer));
}

bool X11Clipboard::convert(xcb_window_t requestor, xcb_atom_t property, xcb_atom_t kind) {
    const auto atom = [this](X11Atom name) { return connection_.atom(name); };
    const auto put = [&](xcb_atom_t type, const std::string& bytes) {
        connection_.setProperty(requestor, property, type, 8, bytes.data(), bytes.size());
        return true;
    };
    if (kind == atom(X11Atom::kTargets)) {
        const std::array<xcb_atom_t, 6> kinds{
            atom(X11Atom::kTargets),       atom(X11Atom::kTimestamp), atom(X11Atom::kUtf8String),
            atom(X11Atom::kPlainTextUtf8), atom(X11Atom::kText),      XCB_ATOM_STRING};
        connection_.setProperty(requestor, property, XCB_ATOM_ATOM, 32, kinds.data(), kinds.size());
        return true;
    }
    if (kind == atom(X11Atom::kTimestamp)) {
        connection_.setProperty(requestor, property, XCB_ATOM_INTEGER, 32, &ownedSince_, 1);
        return true;
    }
    if (kind == atom(X11Atom::kText)) return put(atom(X11Atom::kUtf8String), text_);
    if (kind == atom(X11Atom::kUtf8String) || kind == atom(X11Atom::kPlainTextUtf8))
        return put(kind, text_);
    if (kind == XCB_ATOM_STRING) return put(kind, toLatin1(text_));
    return false;
}

} // namespace Sorel
