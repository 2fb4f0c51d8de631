// Names of presets as names of files: the parts of a path, and which names are refused.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Sorel {

/// How the text of a preset operation is meant.
enum class PresetPlace {
    kComplete, ///< a whole path
    kInFolder, ///< relative to the preset folder
};

/// Everything up to the last slash, with it; empty without one.
std::string_view presetFolderPart(std::string_view path);
/// From the last dot behind the last slash, with it; empty without one.
std::string_view presetExtension(std::string_view path);
/// What stands between these two.
std::string_view presetBaseName(std::string_view path);

/// The file that a preset operation is about. `folder` ends in a slash, `extension` has no dot; it
/// is appended unless it is there, so that "x.y" gives "x.y.fxPreset".
std::string presetPath(std::string_view text,
                       PresetPlace place,
                       std::string_view folder,
                       std::string_view extension);

/// A name without the extension that a user typed behind it.
std::string_view withoutPresetExtension(std::string_view name, std::string_view extension);

enum class PresetNameProblem {
    kNone,
    kEmpty,
    kLeadingDot,
    kSeparator,
    kControlCharacter,
    /// The extension within the name: the list would not show such a file.
    kExtension,
    /// In the preset folder itself: what "Default Settings" is called; not listed as a file.
    kDefault,
};
/// Whatever folder it is for.
PresetNameProblem presetNameProblem(std::string_view name, std::string_view extension);
/// For the user.
const char* presetNameMessage(PresetNameProblem problem);

/// The longest start of a UTF-8 text within `bytes` that ends between characters.
std::string_view cutBetweenCharacters(std::string_view text, std::size_t bytes);

} // namespace Sorel
