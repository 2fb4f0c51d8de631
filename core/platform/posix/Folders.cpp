// Source: XDG Base Directory Specification 0.8 and the user-dirs.dirs file of xdg-user-dirs.
#include "Folders.h"

#include "UserDirs.h"

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string_view>

namespace Core {

namespace fs = std::filesystem;

namespace {
// Variables that are empty or hold a relative path count as unset.
fs::path absolutePathIn(const char* variable) {
    // NOLINTNEXTLINE(concurrency-mt-unsafe): nobody changes the environment of a running host
    const char* text = std::getenv(variable);
    return text != nullptr && text[0] == '/' ? fs::path(text) : fs::path();
}

fs::path homeInUserDatabase() {
    std::vector<char> memory(4096);
    for (;;) {
        passwd entry{};
        passwd* found = nullptr;
        const int error = getpwuid_r(getuid(), &entry, memory.data(), memory.size(), &found);
        if (error == ERANGE && memory.size() < (std::size_t{1} << 20)) {
            memory.resize(memory.size() * 2);
            continue;
        }
        const bool usable =
            error == 0 && found != nullptr && entry.pw_dir != nullptr && entry.pw_dir[0] == '/';
        return usable ? fs::path(entry.pw_dir) : fs::path();
    }
}

fs::path variableOrBelowHome(const char* variable, const char* belowHome) {
    fs::path folder = absolutePathIn(variable);
    if (!folder.empty()) return folder;
    const fs::path home = homeFolder();
    return home.empty() ? fs::path() : home / belowHome;
}

fs::path userFolder(const char* kind) {
    const fs::path home = homeFolder();
    const fs::path folder = folderFromUserDirs(configFolder() / "user-dirs.dirs", kind, home);
    return folder.empty() ? home : folder;
}
} // namespace

fs::path homeFolder() {
    const fs::path home = absolutePathIn("HOME");
    return home.empty() ? homeInUserDatabase() : home;
}

fs::path configFolder() { return variableOrBelowHome("XDG_CONFIG_HOME", ".config"); }
fs::path dataFolder() { return variableOrBelowHome("XDG_DATA_HOME", ".local/share"); }
fs::path desktopFolder() { return userFolder("DESKTOP"); }
fs::path documentsFolder() { return userFolder("DOCUMENTS"); }

std::vector<fs::path> machineConfigFolders() {
    // NOLINTNEXTLINE(concurrency-mt-unsafe): nobody changes the environment of a running host
    const char* variable = std::getenv("XDG_CONFIG_DIRS");
    std::string_view rest = variable == nullptr ? "" : variable;
    if (rest.empty()) rest = "/etc/xdg";

    std::vector<fs::path> folders;
    while (!rest.empty()) {
        const std::string_view entry = rest.substr(0, rest.find(':'));
        if (entry.starts_with('/')) folders.emplace_back(entry);
        rest.remove_prefix(std::min(entry.size() + 1, rest.size()));
    }
    return folders;
}

bool createFolders(const fs::path& folder, Access access) {
    const mode_t mode = access == Access::ownerOnly ? 0700 : 0777;
    fs::path soFar;
    for (const fs::path& part : folder) {
        soFar /= part;
        if (::mkdir(soFar.c_str(), mode) != 0 && errno != EEXIST) {
            // A folder above that we may not touch may well be there.
            struct stat present {};
            if (::stat(soFar.c_str(), &present) != 0) return false;
        }
    }
    std::error_code error;
    return fs::is_directory(folder, error);
}

} // namespace Core
