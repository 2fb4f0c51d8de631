// Addresses as the update server writes them: the host first, with or without a scheme.
#pragma once

#include <string>
#include <string_view>

namespace Dorna {

struct WebAddress {
    std::string host;
    int port = 80;
    std::string path; ///< without the slash in front
};

/// Splits "host/path" or "host:port/path" at its first slash; "http://" in front is left out.
/// The host is empty for anything that cannot be fetched: another scheme, no host, a port outside
/// 1 to 65535, control characters.
WebAddress parseWebAddress(std::string_view text);

/// What to hand to a browser: "http://" stands in front when there is no scheme. Empty for a text
/// that is no web address, so that nothing a server sends makes the desktop open a file or start a
/// program.
std::string browserAddress(std::string_view text);

/// Bytes below a blank, and 0x7F: nothing that goes into a request may have one.
bool hasControlCharacters(std::string_view text);

} // namespace Dorna
