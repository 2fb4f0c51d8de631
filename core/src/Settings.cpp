#include "core/Settings.h"

#include "FileLock.h"
#include "Folders.h"
#include "SettingsText.h"
#include "TextFile.h"
#include "core/AtomicFile.h"

#include <array>
#include <cstdio>
#include <cstring>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace Core {

namespace fs = std::filesystem;

namespace {
constexpr std::string_view kRoot = "Software";
constexpr std::string_view kSuffix = ".conf";

// "Software\A\B\" is A/B.conf. Empty for a path that would leave the configuration folder.
fs::path relativeFile(const char* settingsPath) {
    std::string_view rest = settingsPath == nullptr ? "" : settingsPath;
    fs::path file;
    bool first = true;
    while (!rest.empty()) {
        const std::string_view part = rest.substr(0, rest.find_first_of("\\/"));
        rest.remove_prefix(std::min(part.size() + 1, rest.size()));
        if (part == "." || part == "..") return {};
        if (!part.empty() && !(first && part == kRoot)) file /= part;
        first = false;
    }
    if (!file.empty()) file += kSuffix;
    return file;
}

fs::path userFile(const char* settingsPath) {
    const fs::path folder = configFolder();
    const fs::path file = relativeFile(settingsPath);
    return folder.empty() || file.empty() ? fs::path() : folder / file;
}

// A value that could not have been written counts as none.
std::optional<std::string> valueIn(std::string_view text, const char* name) {
    auto value = findSetting(text, name);
    if (value && (value->size() > kMaxSettingLength || value->find('\0') != std::string::npos))
        value.reset();
    return value;
}

std::optional<std::string> valueInFile(const fs::path& file, const char* name) {
    std::string text;
    if (file.empty() || readTextFile(file, text) != ReadResult::done) return std::nullopt;
    return valueIn(text, name);
}

std::optional<std::string> machineValue(const char* settingsPath, const char* name) {
    const fs::path file = relativeFile(settingsPath);
    if (file.empty()) return std::nullopt;
    for (const fs::path& folder : machineConfigFolders())
        if (auto value = valueInFile(folder / file, name)) return value;
    return std::nullopt;
}

enum class Existing { replace, keep };

// Brings a value into the user's file and gives the one that stands there afterwards. With `keep`
// a value that somebody else wrote since we looked stays, and is the result.
std::optional<std::string>
store(const char* settingsPath, const char* name, const std::string& value, Existing existing) {
    const fs::path file = userFile(settingsPath);
    if (file.empty() || value.empty() || value.size() > kMaxSettingLength || !isSettingName(name) ||
        !createFolders(file.parent_path(), Access::ownerOnly))
        return std::nullopt;

    static std::mutex oneThread;
    const std::lock_guard threadTurn(oneThread);
    fs::path lockFile = file.parent_path() / ".";
    lockFile += file.filename();
    lockFile += ".lock";
    const FileLock processTurn(lockFile);
    if (!processTurn.isHeld()) return std::nullopt;

    std::string text;
    if (readTextFile(file, text) == ReadResult::failed) return std::nullopt; // never destroy it
    const std::optional<std::string> present = valueIn(text, name);
    if (present && (existing == Existing::keep || *present == value)) return present;

    const std::string newText = withSetting(text, name, value);
    if (newText.size() > kMaxTextFileBytes || !writeFileAtomically(file, newText))
        return std::nullopt;
    return value;
}

void copyOut(std::string_view text, char* buffer) {
    const std::size_t length = std::min(text.size(), kMaxSettingLength);
    std::memcpy(buffer, text.data(), length);
    buffer[length] = 0;
}
} // namespace

bool makeSettingsPath(char* buffer, std::size_t size, const char* vendor, const char* product) {
    if (size == 0) return false;
    const int length = std::snprintf(buffer, size, "Software\\%s\\%s\\", vendor, product);
    const bool fits = length > 0 && static_cast<std::size_t>(length) < size;
    if (!fits) buffer[0] = 0;
    return fits;
}

const char* settingsPath() {
    static const std::array<char, 1024> path = [] {
        std::array<char, 1024> text{};
        makeSettingsPath(text.data(), text.size(), "QUILLMERE", "Orvel Scope");
        return text;
    }();
    return path.data();
}

bool readSetting(const char* path, const char* name, char* value, const char* defaultValue) {
    value[0] = 0;
    if (name == nullptr || !isSettingName(name)) return false;

    if (const auto own = valueInFile(userFile(path), name)) {
        copyOut(*own, value);
        return true;
    }
    if (const auto shared = machineValue(path, name)) {
        copyOut(store(path, name, *shared, Existing::keep).value_or(*shared), value);
        return true;
    }
    if (defaultValue != nullptr)
        copyOut(store(path, name, defaultValue, Existing::keep).value_or(defaultValue), value);
    return false;
}

bool writeSetting(const char* path, const char* name, const char* value) {
    return name != nullptr && value != nullptr &&
           store(path, name, value, Existing::replace).has_value();
}

} // namespace Core
