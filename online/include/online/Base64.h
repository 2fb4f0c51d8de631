// Bytes as printable text, for the authorization line of a request.
#pragma once

#include <string>
#include <string_view>

namespace Dorna {

/// Source: RFC 4648, section 4: the alphabet with '+' and '/', padded with '='.
std::string encodeBase64(std::string_view bytes);

} // namespace Dorna
