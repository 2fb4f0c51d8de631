#include "UserDirs.h"

#include "TextFile.h"

#include <optional>
#include <string>
#include <string_view>

namespace Core {

namespace fs = std::filesystem;

namespace {
constexpr std::string_view kBlanks = " \t";

void skipBlanks(std::string_view& text) {
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
}

bool skip(std::string_view& text, std::string_view expected) {
    if (!text.starts_with(expected)) return false;
    text.remove_prefix(expected.size());
    return true;
}

// What stands between double quotes, without the backslashes; nothing when the end is missing.
std::optional<std::string> quoted(std::string_view text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '"') return result;
        if (text[i] == '\\' && ++i == text.size()) return std::nullopt;
        if (text[i] == 0) return std::nullopt;
        result += text[i];
    }
    return std::nullopt;
}

std::optional<fs::path>
folderInLine(std::string_view line, std::string_view variable, const fs::path& home) {
    skipBlanks(line);
    if (!skip(line, variable)) return std::nullopt;
    skipBlanks(line);
    if (!skip(line, "=")) return std::nullopt;
    skipBlanks(line);
    if (!skip(line, "\"")) return std::nullopt;

    const bool belowHome = skip(line, "$HOME");
    const std::optional<std::string> text = quoted(line);
    if (!text) return std::nullopt;
    if (!belowHome) return text->starts_with('/') ? std::optional<fs::path>(*text) : std::nullopt;
    if (home.empty() || !(text->empty() || text->starts_with('/'))) return std::nullopt;
    const std::size_t name = text->find_first_not_of('/');
    return name == std::string::npos ? home : home / text->substr(name);
}
} // namespace

fs::path folderFromUserDirs(const fs::path& file, const char* kind, const fs::path& home) {
    std::string text;
    if (readTextFile(file, text) != ReadResult::done) return {};
    const std::string variable = std::string("XDG_") + kind + "_DIR";

    fs::path folder;
    std::string_view rest = text;
    while (!rest.empty()) {
        const std::string_view line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
        // As in a shell, the last assignment counts.
        if (auto found = folderInLine(line, variable, home)) folder = std::move(*found);
    }
    return folder;
}

} // namespace Core
