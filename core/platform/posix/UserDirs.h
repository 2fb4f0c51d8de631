// The desktop's list of the user's own folders (documents, desktop, music ...).
#pragma once

#include <filesystem>

namespace Core {

/// The folder that `file` (a user-dirs.dirs) names for `kind`, such as "DOCUMENTS"; empty when it
/// names none. The file has the form of a shell script, but is only read, never run:
/// lines XDG_<kind>_DIR="$HOME/below" or ="/absolute", with \ in front of special characters.
std::filesystem::path folderFromUserDirs(const std::filesystem::path& file,
                                         const char* kind,
                                         const std::filesystem::path& home);

} // namespace Core
