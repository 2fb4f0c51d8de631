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

std::string makeDefaultLocation() {
    std::array<char, kPathBufferSize> documents{};
    if (!getSpecialFolder(kDocumentsFolder, documents.data())) return {};
    std::string location = std::string(documents.data()) + kContentFolder;
    if (location.size() > kMaxSettingLength) return {};
    createFolders(location, Access::usual);
    setContentLocation(location.c_str());
    return location;
}
} // namespace

const char* getContentLocation() {
    static std::array<char, kPathBufferSize> buffer{};
    std::array<char, kSettingBufferSize> setting{};
    readSetting(settingsPath(), kContentLocation, setting.data(), nullptr);

    std::string location = setting.data();
    location = location.empty() ? makeDefaultLocation() : withSlash(std::move(location));
    std::memcpy(buffer.data(), location.c_str(), location.size() + 1);
    return buffer.data();
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
