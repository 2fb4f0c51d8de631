// Where pictures go.
#pragma once

#include "CommandLine.h"

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace Vardo {
class IEditorPicture;
}

namespace Standalone {

/// A page and the file of its picture.
using PictureFile = std::pair<Vardo::AnalyserPage, std::filesystem::path>;

/// The pictures that the options ask for. Makes their folder, and finds out whether they can be
/// written before anything is played. Fails: throws UserError.
std::vector<PictureFile> preparePictureFiles(const RenderOptions& options);

/// Fails: throws UserError, and leaves what was there before.
void writePicture(Vardo::IEditorPicture& picture, const std::filesystem::path& path);

} // namespace Standalone
