// Lists of addresses as files.
#include "x11/UriList.h"

#include <unistd.h>

#include <array>
#include <filesystem>
#include <system_error>

namespace Sorel {

namespace {

int hexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

/// Empty when a zero byte is hidden inside.
std::string percentDecoded(std::string_view text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '%' && i + 2 < text.size()) {
            const int high = hexDigit(text[i + 1]);
            const int low = hexDigit(text[i + 2]);
            if (high >= 0 && low >= 0) {
                out.push_back(static_cast<char>(high * 16 + low));
                i += 2;
                continue;
            }
        }
        out.push_back(text[i]);
    }
    return out.find('\0') == std::string::npos ? out : std::string();
}

bool isThisMachine(std::string_view host) {
    if (host.empty() || host == "localhost") return true;
    std::array<char, 256> name{};
    return gethostname(name.data(), name.size() - 1) == 0 && host == name.data();
}

std::string linkTarget(const std::string& path) {
    std::error_code error;
    if (!std::filesystem::is_symlink(path, error)) return path;
    const std::filesystem::path target = std::filesystem::canonical(path, error);
    return error ? path : target.string();
}

} // namespace

std::string pathOfUri(std::string_view uri) {
    constexpr std::string_view kScheme = "file:";
    if (!uri.starts_with(kScheme)) return {};
    uri.remove_prefix(kScheme.size());
    if (uri.starts_with("//")) {
        uri.remove_prefix(2);
        const std::size_t slash = uri.find('/');
        if (slash == std::string_view::npos || !isThisMachine(uri.substr(0, slash))) return {};
        uri.remove_prefix(slash);
    }
    return uri.starts_with('/') ? percentDecoded(uri) : std::string();
}

std::vector<std::string> pathsOfUriList(std::string_view list) {
    std::vector<std::string> paths;
    while (!list.empty()) {
        const std::size_t end = list.find_first_of(std::string_view("\r\n\0", 3));
        std::string path = pathOfUri(list.substr(0, end));
        if (!path.empty()) paths.push_back(linkTarget(path));
        list.remove_prefix(end == std::string_view::npos ? list.size() : end + 1);
    }
    return paths;
}

} // namespace Sorel
