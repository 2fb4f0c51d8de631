// Reading what another program offers.
#include "x11/X11Selection.h"

#include <utility>

namespace Sorel {

X11SelectionReader::X11SelectionReader(const X11Connection& connection,
                                       xcb_window_t window,
                                       xcb_atom_t selection,
                                       xcb_atom_t property)
    : connection_(connection)
    , window_(window)
    , selection_(selection)
    , property_(property) {}

void X11SelectionReader::start(xcb_atom_t kind,
                               xcb_timestamp_t time,
                               std::uint64_t now,
                               Done done) {
    done_ = std::move(done);
    incremental_ = false;
    bytes_.clear();
    lastNews_ = now;
    xcb_delete_property(connection_.xcb(), window_, property_);
    xcb_convert_selection(connection_.xcb(), window_, selection_, kind, property_, time);
    connection_.flush();
}

void X11SelectionReader::finish(bool ok) {
    if (!done_) return;
    if (!ok) bytes_.clear();
    const Done call = std::exchange(done_, nullptr);
    call(ok, std::exchange(bytes_, {})); // may start the next one
}

X11SelectionReader::Property X11SelectionReader::takeProperty() const {
    // The length is in units of four bytes.
    const auto answer = connection_.reply(
        xcb_get_property_reply, xcb_get_property(connection_.xcb(), 1, window_, property_,
                                                 XCB_GET_PROPERTY_TYPE_ANY, 0, kMaxBytes / 4));
    if (!answer) return {};
    const auto* data = static_cast<const char*>(xcb_get_property_value(answer.get()));
    const auto length = static_cast<std::size_t>(xcb_get_property_value_length(answer.get()));
    return {answer->type, std::string(data, length), answer->bytes_after == 0};
}

void X11SelectionReader::onSelectionNotify(const xcb_selection_notify_event_t& event,
                                           std::uint64_t now) {
    if (!done_ || event.selection != selection_) return;
    if (event.property == XCB_NONE) return finish(false);
    Property property = takeProperty();
    lastNews_ = now;
    if (property.type == connection_.atom(X11Atom::kIncr)) {
        incremental_ = true; // taking the property told the owner to begin
        return;
    }
    bytes_ = std::move(property.bytes);
    finish(property.whole && property.type != XCB_NONE);
}

void X11SelectionReader::onPropertyNotify(const xcb_property_notify_event_t& event,
                                          std::uint64_t now) {
    if (!done_ || !incremental_ || event.atom != property_ || event.state != XCB_PROPERTY_NEW_VALUE)
        return;
    const Property piece = takeProperty();
    lastNews_ = now;
    if (piece.bytes.empty()) return finish(true);
    bytes_ += piece.bytes;
    if (!piece.whole || bytes_.size() > kMaxBytes) finish(false);
}

void X11SelectionReader::onIdle(std::uint64_t now) {
    if (done_ && now - lastNews_ > kPatienceMilliseconds) finish(false);
}

} // namespace Sorel
