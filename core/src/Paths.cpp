#include "core/Paths.h"

#include "Folders.h"
#include "core/Settings.h"

#include <array>
#include <cstring>
#include <string>

namespace Core {

namespace {
constexpr const char* kContentLocation = "ContentLocation";
constexpr const char* kContentFolder = "Quillmere/Orvel Scope/";

std::string withSlash(std::string path) {
    if (!path.empty() && path.back() != '/') path += '/';
    return path;
}

std::string storedLocation() {
    std::array<char, kSettingBufferSize> setting{};
    readSetting(settingsPath(), kContentLocation, setting.data(), nullptr);
    return withSlash(setting.data());
}

std::string defaultLocation() {
    std::array<char, kPathBufferSize> documents{};
    if (!getSpecialFolder(kDocumentsFolder, documents.data())) return {};
    std::string location = std::string(documents.data()) + kContentFolder;
    return location.size() > kMaxSettingLength ? std::string() : location;
}
} // namespace

const char* getContentLocation() {
    static std::array<char, kPathBufferSize> buffer{};
    std::string location = storedLocation();
    if (location.empty()) location = defaultLocation();
    std::memcpy(buffer.data(), location.c_str(), location.size() + 1);
    return buffer.data();
}

bool makeContentLocation() {
    const std::string location = getContentLocation();
    if (location.empty() || !createFolders(location, Access::usual)) return false;
    if (storedLocation().empty()) setContentLocation(location.c_str());
    return true;
}

bool setContentLocation(const char* path) {
    if (path == nullptr) return false;
    return writeSetting(settingsPath(), kContentLocation, withSlash(path).c_str());
}

bool getSpecialFolder(int kind, char* path) {
    std::string folder;
    switch (kind) {
    case kDesktopFolder:
        folder = desktopFolder().generic_string();
        break;
    case kDocumentsFolder:
    case kPersonalDocumentsFolder:
    case kCommonDocumentsFolder:
        folder = documentsFolder().generic_string();
        break;
    case kDataFolder:
        folder = dataFolder().generic_string();
        break;
    default:
        break;
    }
    folder = withSlash(std::move(folder));
    const bool fits = !folder.empty() && folder.size() < kPathBufferSize;
    std::memcpy(path, fits ? folder.c_str() : "", fits ? folder.size() + 1 : 1);
    return fits;
}

} // namespace Core
