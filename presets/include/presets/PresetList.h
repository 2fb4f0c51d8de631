// The presets of a folder and of the folders in it.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Sorel {

struct PresetEntry {
    /// Of the file; forward slashes.
    std::string path;
    /// Base name of the file.
    std::string name;
    /// The name of the sub-folder that it lies in; none for the preset folder itself.
    std::optional<std::string> folder;
};

/// What a walk over a preset folder meets: `folder` ends in a slash in the preset folder itself
/// alone.
using PresetFileFound =
    std::function<void(const std::string& folder, const std::string& fileName, bool inSubFolder)>;

/// Visits the plain files in `folder` (which ends in a slash) and in its sub-folders, one level
/// deep, in natural order ignoring case. Names that begin with a dot are passed over: they are
/// hidden, and no preset is called so. What cannot be read is passed over too.
/// Threads: main thread; waits for the disk.
void walkPresetFolder(const std::string& folder, const PresetFileFound& found);

/// The entry of a file found; none when it is no preset. Only the first place of "." + `extension`
/// in the name counts, and nothing may follow it.
std::optional<PresetEntry> presetEntryFor(std::string_view folder,
                                          std::string_view fileName,
                                          bool inSubFolder,
                                          std::string_view extension);

enum class RenameResult {
    kDone,
    kNoPreset,    ///< there is nothing to rename
    kNameRefused, ///< see FindNameProblem
    kExists,      ///< a file of that name is there
    kFailed,      ///< the system refused
};
/// Gives a file another name and never replaces another file, as the system's rename would.
RenameResult renameWithoutReplacing(const std::string& from, const std::string& to);

} // namespace Sorel
