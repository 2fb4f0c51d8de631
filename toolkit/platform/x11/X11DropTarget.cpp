// Drags of other programs over our window.
#include "x11/X11DropTarget.h"

#include "core/Utf8.h"
#include "x11/UriList.h"

#include <utility>

namespace Sorel {

X11DropTarget::X11DropTarget(const X11Connection& connection,
                             xcb_window_t window,
                             IFrameEvents& events)
    : connection_(connection)
    , window_(window)
    , events_(&events)
    , reader_(connection,
              window,
              connection.atom(X11Atom::kXdndSelection),
              connection.atom(X11Atom::kDropProperty)) {
    connection.setProperty(window, connection.atom(X11Atom::kXdndAware), XCB_ATOM_ATOM, 32,
                           &kVersion, 1);
}

bool X11DropTarget::onEvent(const xcb_generic_event_t& event, std::uint64_t now) {
    if (events_ == nullptr) return false;
    switch (event.response_type & 0x7F) {
    case XCB_CLIENT_MESSAGE:
        return onMessage(reinterpret_cast<const xcb_client_message_event_t&>(event), now);
    case XCB_SELECTION_NOTIFY: {
        const auto& notify = reinterpret_cast<const xcb_selection_notify_event_t&>(event);
        if (notify.selection != connection_.atom(X11Atom::kXdndSelection)) return false;
        reader_.onSelectionNotify(notify, now);
        return true;
    }
    case XCB_PROPERTY_NOTIFY:
        reader_.onPropertyNotify(reinterpret_cast<const xcb_property_notify_event_t&>(event), now);
        return false;
    case XCB_DESTROY_NOTIFY: {
        const auto& destroyed = reinterpret_cast<const xcb_destroy_notify_event_t&>(event);
        if (source_ == XCB_NONE || destroyed.window != source_) return false;
        leave();
        return true;
    }
    default:
        return false;
    }
}

bool X11DropTarget::onMessage(const xcb_client_message_event_t& message, std::uint64_t now) {
    const auto is = [&](X11Atom name) { return message.type == connection_.atom(name); };
    if (message.format != 32) return false;
    if (is(X11Atom::kXdndEnter)) {
        onEnter(message);
        return true;
    }
    const bool known =
        is(X11Atom::kXdndPosition) || is(X11Atom::kXdndDrop) || is(X11Atom::kXdndLeave);
    if (!known || source_ == XCB_NONE || message.data.data32[0] != source_) return known;
    if (is(X11Atom::kXdndPosition)) onPosition(message, now);
    if (is(X11Atom::kXdndDrop)) onDrop(message, now);
    if (is(X11Atom::kXdndLeave)) leave();
    return true;
}

void X11DropTarget::watchSource(bool on) const {
    const std::uint32_t mask = on ? XCB_EVENT_MASK_STRUCTURE_NOTIFY : XCB_EVENT_MASK_NO_EVENT;
    if (source_ != window_)
        xcb_change_window_attributes(connection_.xcb(), source_, XCB_CW_EVENT_MASK, &mask);
}

void X11DropTarget::onEnter(const xcb_client_message_event_t& message) {
    leave(); // one that was never finished
    if (events_ == nullptr || (message.data.data32[1] >> 24) < 3) return;
    source_ = message.data.data32[0];
    watchSource(true);
    const bool hasList = (message.data.data32[1] & 1) != 0;
    if (!hasList) return chooseKind(&message.data.data32[2], 3);
    const auto list = connection_.reply(xcb_get_property_reply,
                                        xcb_get_property(connection_.xcb(), 0, source_,
                                                         connection_.atom(X11Atom::kXdndTypeList),
                                                         XCB_ATOM_ATOM, 0, 256));
    if (!list) return;
    chooseKind(static_cast<const xcb_atom_t*>(xcb_get_property_value(list.get())),
               static_cast<std::size_t>(xcb_get_property_value_length(list.get())) / 4);
}

void X11DropTarget::chooseKind(const xcb_atom_t* kinds, std::size_t count) {
    kind_ = XCB_NONE;
    // The best last.
    for (const X11Atom wanted :
         {X11Atom::kPlainText, X11Atom::kUtf8String, X11Atom::kPlainTextUtf8, X11Atom::kUriList})
        for (std::size_t i = 0; i < count; ++i)
            if (kinds[i] == connection_.atom(wanted)) kind_ = kinds[i];
}

void X11DropTarget::onPosition(const xcb_client_message_event_t& message, std::uint64_t now) {
    const std::uint32_t packed = message.data.data32[2];
    screenPosition_ = {static_cast<double>(packed >> 16), static_cast<double>(packed & 0xFFFF)};
    owesStatus_ = true;
    if (kind_ == XCB_NONE) return sendStatus();
    if (container_) {
        moveTo(screenPosition_);
        if (source_ != XCB_NONE) sendStatus();
        return;
    }
    requestData(message.data.data32[3], now);
}

void X11DropTarget::requestData(xcb_timestamp_t time, std::uint64_t now) {
    if (requested_) return;
    requested_ = true;
    reader_.start(kind_, time, now,
                  [this](bool ok, const std::string& bytes) { onData(ok, bytes); });
}

void X11DropTarget::onData(bool ok, const std::string& bytes) {
    std::vector<CDragContainer::Entry> entries;
    if (kind_ == connection_.atom(X11Atom::kUriList)) {
        for (std::string& path : pathsOfUriList(bytes))
            entries.push_back({CDragContainer::Kind::kFilePath, std::move(path)});
    } else if (ok) {
        entries.push_back({CDragContainer::Kind::kText, bytes});
    }
    if (entries.empty()) {
        kind_ = XCB_NONE; // nothing that we could take
    } else {
        container_ = Counted<CDragContainer>::make(std::move(entries));
        accepted_ = false;
        moveTo(screenPosition_);
    }
    if (events_ == nullptr || source_ == XCB_NONE) return;
    if (owesStatus_) sendStatus();
    if (dropPending_) drop();
}

void X11DropTarget::moveTo(CPoint onScreen) {
    const auto there =
        connection_.reply(xcb_translate_coordinates_reply,
                          xcb_translate_coordinates(connection_.xcb(), connection_.screen().root,
                                                    window_, static_cast<std::int16_t>(onScreen.x),
                                                    static_cast<std::int16_t>(onScreen.y)));
    if (!there || events_ == nullptr) return;
    const bool first = !std::exchange(entered_, true);
    position_ = {static_cast<double>(there->dst_x), static_cast<double>(there->dst_y)};
    const Counted<CDragContainer> drag = container_;
    if (first) events_->platformDragEnter(*drag, position_);
    if (events_ != nullptr) events_->platformDragMove(*drag, position_);
}

void X11DropTarget::onDrop(const xcb_client_message_event_t& message, std::uint64_t now) {
    dropPending_ = true;
    if (kind_ != XCB_NONE && !container_) return requestData(message.data.data32[2], now);
    drop();
}

void X11DropTarget::drop() {
    bool taken = false;
    const Counted<CDragContainer> drag = container_;
    if (drag && accepted_)
        taken = events_->platformDrop(*drag, position_);
    else if (drag)
        events_->platformDragLeave(*drag, position_);
    if (events_ == nullptr) return;
    send(X11Atom::kXdndFinished, taken ? 1 : 0,
         taken ? connection_.atom(X11Atom::kXdndActionCopy) : XCB_NONE);
    container_ = nullptr;
    leave();
}

void X11DropTarget::leave() {
    if (source_ == XCB_NONE) return;
    watchSource(false);
    reader_.cancel();
    source_ = XCB_NONE;
    kind_ = XCB_NONE;
    requested_ = entered_ = accepted_ = owesStatus_ = dropPending_ = false;
    if (const Counted<CDragContainer> drag = std::exchange(container_, nullptr))
        if (events_ != nullptr) events_->platformDragLeave(*drag, position_);
}

void X11DropTarget::sendStatus() {
    owesStatus_ = false;
    const bool accepts = container_ && accepted_;
    // Bit 1: tell us of every move, not only of those out of a rectangle.
    send(X11Atom::kXdndStatus, (accepts ? 1U : 0U) | 2U,
         accepts ? connection_.atom(X11Atom::kXdndActionCopy) : XCB_NONE);
}

void X11DropTarget::send(X11Atom type, std::uint32_t flags, std::uint32_t action) {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = source_;
    message.type = connection_.atom(type);
    message.data.data32[0] = window_;
    message.data.data32[1] = flags;
    // The finished message has the action in the third field, the status in the fifth.
    message.data.data32[type == X11Atom::kXdndFinished ? 2 : 4] = action;
    xcb_send_event(connection_.xcb(), 0, source_, 0, reinterpret_cast<const char*>(&message));
    connection_.flush();
}

} // namespace Sorel
