#include "presets/PresetList.h"

#include "NaturalOrder.h"
#include "presets/PresetName.h"

#include <algorithm>
#include <filesystem>

namespace Sorel {

namespace fs = std::filesystem;

namespace {
struct Item {
    std::string name;
    bool isFolder = false;
};

std::vector<Item> itemsIn(const std::string& folder) {
    std::vector<Item> items;
    std::error_code error;
    for (fs::directory_iterator item(folder, error), end; !error && item != end;
         item.increment(error)) {
        std::string name = item->path().filename().string();
        if (name.starts_with('.')) continue;
        std::error_code itemError; // a link to nowhere ends no walk
        if (item->is_directory(itemError))
            items.push_back({std::move(name), true});
        else if (item->is_regular_file(itemError))
            items.push_back({std::move(name), false});
    }
    std::sort(items.begin(), items.end(),
              [](const Item& a, const Item& b) { return naturallyBefore(a.name, b.name); });
    return items;
}

/// On a file system that ignores case, `to` is there and is the file itself.
bool differsInCaseAlone(const fs::path& from, const fs::path& to) {
    std::error_code error;
    return fs::equivalent(from, to, error) && fs::hard_link_count(from, error) == 1 &&
           !fs::is_symlink(to, error);
}
} // namespace

void walkPresetFolder(const std::string& folder, const PresetFileFound& found) {
    for (const Item& item : itemsIn(folder)) {
        if (!item.isFolder) {
            found(folder, item.name, false);
            continue;
        }
        const std::string inner = folder + item.name;
        for (const Item& file : itemsIn(inner))
            if (!file.isFolder) found(inner, file.name, true);
    }
}

std::optional<PresetEntry> presetEntryFor(std::string_view folder,
                                          std::string_view fileName,
                                          bool inSubFolder,
                                          std::string_view extension) {
    std::string ending(".");
    ending += extension;
    const std::size_t at = fileName.find(ending);
    if (at == std::string_view::npos || at + ending.size() != fileName.size()) return {};
    if (fileName.find('/') != std::string_view::npos) return {};

    PresetEntry entry;
    (entry.path = folder) += inSubFolder ? "/" : "";
    entry.path += fileName;
    entry.name = presetBaseName(entry.path);
    if (inSubFolder) entry.folder = folder.substr(presetFolderPart(folder).size());
    return entry;
}

RenameResult renameWithoutReplacing(const std::string& from, const std::string& to) {
    std::error_code error;
    if (from == to) return RenameResult::kDone;
    // A second name fails on an existing one in the same step; then the first name can go.
    fs::create_hard_link(from, to, error);
    if (!error) {
        if (fs::remove(from, error)) return RenameResult::kDone;
        fs::remove(to, error);
        return RenameResult::kFailed;
    }
    // Some file systems know no second names.
    if (fs::exists(fs::symlink_status(to, error)) && !differsInCaseAlone(from, to))
        return RenameResult::kExists;
    fs::rename(from, to, error);
    return error ? RenameResult::kFailed : RenameResult::kDone;
}

} // namespace Sorel
