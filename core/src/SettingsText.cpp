#include "SettingsText.h"

#include <algorithm>

namespace Core {

namespace {
constexpr std::string_view kBlanks = " \t\r";

std::string_view trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

// Takes one line off the front of `rest`, with its line end.
std::string_view nextLine(std::string_view& rest) {
    const std::size_t end = rest.find('\n');
    const std::string_view line = rest.substr(0, end == std::string_view::npos ? end : end + 1);
    rest.remove_prefix(line.size());
    return line;
}

// The value part of a line if it sets `name`.
std::optional<std::string_view> valueInLine(std::string_view line, std::string_view name) {
    if (line.ends_with('\n')) line.remove_suffix(1);
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos || trimmed(line.substr(0, equals)) != name)
        return std::nullopt;
    return trimmed(line.substr(equals + 1));
}

std::string escaped(std::string_view value) {
    std::string text;
    for (std::size_t i = 0; i < value.size(); ++i) {
        const bool atAnEnd = i == 0 || i + 1 == value.size();
        switch (value[i]) {
        case '\\':
            text += "\\\\";
            break;
        case '\n':
            text += "\\n";
            break;
        case '\r':
            text += "\\r";
            break;
        case '\t':
            text += "\\t";
            break;
        case ' ':
            text += atAnEnd ? "\\s" : " ";
            break;
        default:
            text += value[i];
        }
    }
    return text;
}

std::string unescaped(std::string_view text) {
    std::string value;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\' || i + 1 == text.size()) {
            value += text[i];
            continue;
        }
        switch (text[++i]) {
        case 'n':
            value += '\n';
            break;
        case 'r':
            value += '\r';
            break;
        case 't':
            value += '\t';
            break;
        case 's':
            value += ' ';
            break;
        default:
            value += text[i];
        }
    }
    return value;
}
} // namespace

bool isSettingName(std::string_view name) noexcept {
    const auto unfit = [](char c) { return c == '=' || (c >= 0 && c < ' ') || c == 0x7F; };
    return !name.empty() && name.front() != '#' && name.front() != ' ' && name.back() != ' ' &&
           std::none_of(name.begin(), name.end(), unfit);
}

std::optional<std::string> findSetting(std::string_view text, std::string_view name) {
    while (!text.empty())
        if (const auto value = valueInLine(nextLine(text), name)) return unescaped(*value);
    return std::nullopt;
}

std::string withSetting(std::string_view text, std::string_view name, std::string_view value) {
    const std::string ours = std::string(name) + " = " + escaped(value) + "\n";
    std::string result;
    bool written = false;
    while (!text.empty()) {
        const std::string_view line = nextLine(text);
        if (!written && valueInLine(line, name)) {
            result += ours;
            written = true;
        } else {
            result += line;
        }
    }
    if (written) return result;
    if (!result.empty() && result.back() != '\n') result += '\n';
    return result + ours;
}

} // namespace Core
