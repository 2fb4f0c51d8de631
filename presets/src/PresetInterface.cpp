#include "presets/PresetInterface.h"

#include "presets/PresetBrowser.h"
#include "presets/PresetMessages.h"

#include <filesystem>
#include <utility>

namespace Sorel {

namespace fs = std::filesystem;

const char* const kNotifyPresetFolderChanged = "kNotifyPresetFolderChanged";

CPresetInterface::CPresetInterface(Vardo::IPluginBase* plugin, IPresetNameStore* names)
    : plugin_(plugin)
    , names_(names) {}

const PresetEntry* CPresetInterface::GetPresetEntry(int index) const {
    return index >= 0 && index < GetPresetCount() ? &entries_[static_cast<std::size_t>(index)]
                                                  : nullptr;
}

const char* CPresetInterface::GetPresetName(int index) const {
    const PresetEntry* entry = GetPresetEntry(index);
    return entry != nullptr ? entry->name.c_str() : nullptr;
}

const char* CPresetInterface::GetCurrentPresetName() const {
    return browser_ != nullptr ? browser_->getText() : "NoName";
}

const FileDialogRequest::Extension& CPresetInterface::GetFileType() const {
    static const FileDialogRequest::Extension type{"Tolvane FX Preset", "tolvaneFX", ""};
    return type;
}

void CPresetInterface::SetPresetFolder(const char* folder) {
    folder_ = folder != nullptr ? folder : "";
    if (!folder_.empty() && folder_.back() != '/') folder_ += '/';
}

std::string CPresetInterface::pathFor(const char* text, PresetPlace place) {
    return presetPath(text != nullptr ? text : "", place, GetPresetFolder(),
                      GetFileType().extension);
}

int CPresetInterface::indexOf(const std::string& path) const {
    for (int i = 0; i < GetPresetCount(); ++i)
        if (GetPresetEntry(i)->path == path) return i;
    // A dialog may have gone another way to the same file, past a link to a folder.
    std::error_code error;
    for (int i = 0; i < GetPresetCount(); ++i)
        if (fs::equivalent(GetPresetEntry(i)->path, path, error)) return i;
    return -1;
}

void CPresetInterface::AddPresetFile(const char* folder, const char* fileName, bool inSubFolder) {
    auto entry = presetEntryFor(folder, fileName, inSubFolder, GetFileType().extension);
    if (entry) entries_.push_back(std::move(*entry));
}

PresetNameProblem CPresetInterface::FindNameProblem(const std::string& /*folder*/,
                                                    const std::string& name) {
    return presetNameProblem(name, GetFileType().extension);
}

void CPresetInterface::RescanPresets() {
    const PresetEntry* current = GetPresetEntry(currentIndex_);
    const std::string currentPath = current != nullptr ? current->path : std::string();
    ClearPresetList();
    const std::string folder = GetPresetFolder();
    if (!folder.empty()) {
        std::error_code error;
        fs::create_directories(folder, error);
        walkPresetFolder(
            folder, [this](const std::string& where, const std::string& file, bool inSubFolder) {
                AddPresetFile(where.c_str(), file.c_str(), inSubFolder);
            });
    }
    currentIndex_ = currentPath.empty() ? -1 : indexOf(currentPath);
}

void CPresetInterface::SelectPresetByName(const char* text, PresetPlace place) {
    if (text == nullptr) {
        currentIndex_ = -1;
        return;
    }
    std::string target(place == PresetPlace::kInFolder ? GetPresetFolder() : "");
    target += text;
    RescanPresets();
    const int index = indexOf(target);
    if (index >= 0) currentIndex_ = index;
}

RenameResult CPresetInterface::RenameCurrentPreset(const char* newName) {
    const PresetEntry* current = GetPresetEntry(currentIndex_);
    if (current == nullptr || newName == nullptr) return RenameResult::kNoPreset;
    const std::string& extension = GetFileType().extension;
    const std::string name(withoutPresetExtension(newName, extension));
    const std::string from = current->path;
    const std::string folder(presetFolderPart(from));
    if (FindNameProblem(folder, name) != PresetNameProblem::kNone)
        return RenameResult::kNameRefused;

    std::string to = folder + name;
    to += presetExtension(from);
    const RenameResult result = renameWithoutReplacing(from, to);
    if (result == RenameResult::kDone)
        SelectPresetByName(to.c_str(), PresetPlace::kComplete);
    else
        RescanPresets();
    return result;
}

void CPresetInterface::ConfirmOverwrite(const char* text,
                                        PresetPlace place,
                                        CView* view,
                                        PresetContinuation then) {
    const std::string path = pathFor(text, place);
    std::error_code error;
    if (!fs::exists(path, error)) {
        then(true);
        return;
    }
    const std::string name(presetBaseName(path));
    PresetMessages::ask(view, "Preset Exists",
                        "File \"" + name + "\" alread Exists, overwrite ?\n(" + path + ")",
                        {"Yes", "No"}, std::move(then));
}

void CPresetInterface::DeletePreset(int index, CView* view, PresetContinuation then) {
    const PresetEntry* entry = GetPresetEntry(index);
    if (entry == nullptr) return;
    // The list may be another one when the answer comes: the path counts.
    PresetMessages::ask(
        view, "Warning!",
        "Do you really want to delete \"" + entry->name + "\" ?\n(" + entry->path + ")",
        {"Yes", "No"}, [this, path = entry->path, then = std::move(then)](bool yes) {
            std::error_code error;
            if (yes) fs::remove(path, error);
            RescanPresets();
            setCurrentIndex(-1);
            if (then) then(!error);
        });
}

void CPresetInterface::valueChanged(CControl* control) {
    if (control != nullptr && control == browser_) SetPresetName(browser_->getText());
}

} // namespace Sorel
