#include "online/WebAddress.h"

#include "core/NumberText.h"

#include <algorithm>
#include <charconv>

namespace Dorna {

namespace {
constexpr std::string_view kHttp = "http://";
constexpr std::string_view kHttps = "https://";

bool startsWith(std::string_view text, std::string_view scheme) {
    return Core::equalsIgnoringCase(std::string(text.substr(0, scheme.size())).c_str(),
                                    scheme.data());
}

bool isHostCharacter(char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '.' ||
           c == '-' || c == '_';
}

/// 0 for anything that is no port.
int parsePort(std::string_view text) {
    int port = 0;
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, port);
    return error == std::errc() && rest == end && port >= 1 && port <= 65535 ? port : 0;
}
} // namespace

bool hasControlCharacters(std::string_view text) {
    return std::any_of(text.begin(), text.end(), [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte < 0x20 || byte == 0x7F;
    });
}

WebAddress parseWebAddress(std::string_view text) {
    if (startsWith(text, kHttp)) text.remove_prefix(kHttp.size());
    if (hasControlCharacters(text)) return {};
    WebAddress address;
    std::string_view host = text.substr(0, text.find('/'));
    if (host.size() < text.size()) address.path = text.substr(host.size() + 1);
    if (const std::size_t colon = host.find(':'); colon != std::string_view::npos) {
        address.port = parsePort(host.substr(colon + 1));
        host = host.substr(0, colon);
    }
    if (host.empty() || host.front() == '-' || address.port == 0 ||
        !std::all_of(host.begin(), host.end(), isHostCharacter))
        return {};
    address.host = host;
    return address;
}

std::string browserAddress(std::string_view text) {
    const bool secure = startsWith(text, kHttps);
    const std::string_view plain = text.substr(secure ? kHttps.size() : 0);
    if ((secure && startsWith(plain, kHttp)) || parseWebAddress(plain).host.empty()) return {};
    return std::string(secure || startsWith(text, kHttp) ? "" : kHttp) += text;
}

} // namespace Dorna
