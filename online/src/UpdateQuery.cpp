#include "online/UpdateQuery.h"

#include "core/AtomicFile.h"
#include "core/Paths.h"

#include <array>
#include <fstream>

namespace Dorna {

namespace fs = std::filesystem;

namespace {
constexpr const char* kPageKey = "PRODUCT_PAGE";
constexpr std::size_t kMaxCacheBytes = 4096;

bool isWordCharacter(char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_';
}

/// Where the key's value begins, or npos.
std::size_t findKey(std::string_view text, const std::string& keyAndSign, bool atLineStart) {
    for (std::size_t at = text.find(keyAndSign); at != std::string_view::npos;
         at = text.find(keyAndSign, at + 1)) {
        const char before = at == 0 ? '\n' : text[at - 1];
        const bool counts =
            atLineStart ? before == '\n' || before == '\r' : !isWordCharacter(before);
        if (counts) return at + keyAndSign.size();
    }
    return std::string_view::npos;
}
} // namespace

std::string versionText(std::uint32_t versionNumber) {
    const auto part = [versionNumber](int shift) {
        const std::uint32_t byte = versionNumber >> shift & 0xFFU;
        return std::to_string((byte & 0xFU) + 10 * (byte >> 4));
    };
    return part(16) + "." + part(8) + "." + part(0);
}

std::string updateQueryPath(const std::string& webId,
                            std::uint32_t versionNumber,
                            const std::string& interfaceName) {
    return "update_available.php?WEB_ID=" + webId + "&VERSION=" + versionText(versionNumber) +
           "&INTERFACE=" + interfaceName + "&PLATFORM=" + platformName();
}

bool findReplyValue(std::string_view text, std::string_view key, std::string& value) {
    value.clear();
    const std::string keyAndSign = std::string(key) + "=";
    std::size_t at = findKey(text, keyAndSign, true);
    if (at == std::string_view::npos) at = findKey(text, keyAndSign, false);
    if (at == std::string_view::npos) return false;
    text.remove_prefix(at);
    text = text.substr(0, text.find_first_of(std::string_view("\r\n\0", 3)));
    text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
    text = text.substr(0, text.find_last_not_of(" \t") + 1);
    if (text.size() <= kMaxReplyValueBytes) value = text;
    return true;
}

fs::path pageCacheFile(const std::string& productName) {
    std::array<char, Core::kPathBufferSize> folder{};
    if (!Core::getSpecialFolder(Core::kDataFolder, folder.data())) return {};
    return fs::path(folder.data()) / "Quillmere" / productName / "0.cache";
}

std::string readCachedPage(const std::string& productName) {
    const fs::path file = pageCacheFile(productName);
    std::error_code error;
    if (file.empty() || !fs::is_regular_file(file, error)) return {};
    std::string text(kMaxCacheBytes, '\0');
    std::ifstream in(file, std::ios::binary);
    in.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(in.gcount()));
    std::string page;
    findReplyValue(text, kPageKey, page);
    return page;
}

bool writeCachedPage(const std::string& productName, const std::string& page) {
    const fs::path file = pageCacheFile(productName);
    if (file.empty()) return false;
    std::error_code error;
    fs::create_directories(file.parent_path(), error);
    return !error && Core::writeFileAtomically(file, std::string(kPageKey) + "=" + page);
}

} // namespace Dorna
