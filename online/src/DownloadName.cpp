#include "online/DownloadName.h"

#include "core/Utf8.h"

#include <charconv>

namespace Dorna {

namespace fs = std::filesystem;

namespace {
constexpr std::size_t kMaxNameBytes = 200; // file systems take 255; leaves room for a number
constexpr int kMaxNumber = 999;
constexpr std::string_view kForbidden = "/\\:*?\"<>|";
constexpr std::string_view kEdges = ". ";

/// "%C3%B6" as the bytes it stands for; what is no such code stays.
std::string percentDecoded(std::string_view text) {
    std::string bytes;
    for (std::size_t at = 0; at < text.size(); ++at) {
        int code = 0;
        const char* const digits = text.data() + at + 1;
        const bool coded = text[at] == '%' && text.size() - at > 2 && digits[0] != '-' &&
                           std::from_chars(digits, digits + 2, code, 16).ptr == digits + 2;
        bytes += coded ? static_cast<char>(code) : text[at];
        if (coded) at += 2;
    }
    return bytes;
}

void trimEdges(std::string& name) {
    name.erase(0, name.find_first_not_of(kEdges));
    name.erase(name.find_last_not_of(kEdges) + 1);
}
} // namespace

std::string fileNameOfAddress(std::string_view address) {
    address = address.substr(0, address.find_first_of("?#"));
    const std::size_t slash = address.find_last_of('/');
    if (slash != std::string_view::npos) address.remove_prefix(slash + 1);

    std::string name = Core::Utf8::oneLine(percentDecoded(address));
    for (char& c : name)
        if (c == 0 || kForbidden.find(c) != std::string_view::npos) c = '_';
    trimEdges(name);
    if (name.size() > kMaxNameBytes) {
        // The extension says what the file is: shorten in front of it.
        std::string extension = fs::path(name).extension().string();
        if (extension.size() > kMaxNameBytes / 4) extension.clear();
        name.resize(Core::Utf8::boundaryAtOrBefore(name, kMaxNameBytes - extension.size()));
        name += extension;
        trimEdges(name);
    }
    return name.empty() ? "update" : name;
}

fs::path freeFileName(const fs::path& wanted) {
    std::error_code error;
    // Also a link that points nowhere is taken.
    const auto isTaken = [&](const fs::path& path) {
        return fs::symlink_status(path, error).type() != fs::file_type::not_found;
    };
    if (!isTaken(wanted)) return wanted;
    fs::path stem = wanted.stem();
    std::string extension = wanted.extension().string();
    if (stem.extension() == ".tar") {
        extension = ".tar" + extension;
        stem = stem.stem();
    }
    for (int number = 2; number <= kMaxNumber; ++number) {
        const std::string name = stem.string() + " (" + std::to_string(number) + ")" + extension;
        fs::path path = wanted.parent_path() / name;
        if (!isTaken(path)) return path;
    }
    return {};
}

} // namespace Dorna
