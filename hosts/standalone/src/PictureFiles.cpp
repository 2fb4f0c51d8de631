// Where pictures go.
#include "PictureFiles.h"

#include "UserError.h"
#include "frame/EditorHost.h"

#include <cerrno>
#include <cstring>
#include <system_error>

#include <unistd.h>

namespace Standalone {
namespace {

namespace fs = std::filesystem;

std::string quoted(const fs::path& path) { return std::string("'").append(path.string()) + "'"; }

void makeFolder(const fs::path& folder) {
    std::error_code error;
    fs::create_directories(folder, error);
    if (fs::is_directory(folder)) {
        if (access(folder.c_str(), W_OK | X_OK) != 0)
            throw UserError("may not write into the folder " + quoted(folder) + " (" +
                            std::strerror(errno) + "); choose another one with -o");
        return;
    }
    throw UserError("cannot make the folder " + quoted(folder) + " (" +
                    (fs::exists(folder) ? std::string("a file has that name") : error.message()) +
                    "); choose another one with -o");
}

// A picture replaces a file; it does not go into folders and devices.
void refuseOtherThanFile(const fs::path& path) {
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (fs::is_directory(status))
        throw UserError(quoted(path) + " is a folder; name the picture in it, or give --all");
    if (fs::exists(status) && !fs::is_regular_file(status))
        throw UserError(quoted(path) + " is a device or a pipe; name a file on disk");
}

fs::path folderOf(const fs::path& file) {
    return file.has_parent_path() ? file.parent_path() : fs::path(".");
}

} // namespace

std::vector<PictureFile> preparePictureFiles(const RenderOptions& options) {
    std::vector<PictureFile> files;
    const fs::path output(options.output);
    if (!options.allPages) {
        if (!output.has_filename()) // ends in a slash
            throw UserError(quoted(output) + " is a folder; name the picture in it");
        files.emplace_back(options.page.value_or(Vardo::AnalyserPage::scope), output);
    } else {
        for (const auto page : {Vardo::AnalyserPage::scope, Vardo::AnalyserPage::spectrum,
                                Vardo::AnalyserPage::stereoField, Vardo::AnalyserPage::system})
            files.emplace_back(page, output / (std::string(pageName(page)) + ".png"));
    }
    makeFolder(folderOf(files.front().second));
    for (const PictureFile& file : files)
        refuseOtherThanFile(file.second);
    return files;
}

void writePicture(Vardo::IEditorPicture& picture, const fs::path& path) {
    std::error_code error;
    // A link stays one: what it points to is replaced.
    fs::path target = fs::is_symlink(path, error) ? fs::weakly_canonical(path, error) : path;
    if (error) target = path;
    const fs::path part =
        folderOf(target) / (".orvelscope-" + std::to_string(getpid()) + ".png.part");

    std::string problem;
    if (!picture.writePicture(part.string(), problem)) {
        fs::remove(part, error);
        throw UserError("cannot write " + quoted(path) + " (" + problem +
                        "); check the folder and the space on its disk");
    }
    fs::rename(part, target, error);
    if (!error) return;
    std::error_code ignored;
    fs::remove(part, ignored);
    throw UserError("cannot write " + quoted(path) + " (" + error.message() +
                    "); check the folder's permissions");
}

} // namespace Standalone
