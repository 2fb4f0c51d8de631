#include "presets/SingleFXPresetInterface.h"

#include "core/AtomicFile.h"
#include "core/Paths.h"
#include "draw/ResourceArchive.h"
#include "frame/PluginBase.h"
#include "frame/PluginParameter.h"
#include "presets/PresetBrowser.h"
#include "presets/PresetMessages.h"

#include <filesystem>
#include <string_view>
#include <utility>

namespace Sorel {

namespace fs = std::filesystem;

namespace {
constexpr std::string_view kFactoryPrefix = "presets/";
constexpr const char* kHiddenPreset = "Default";

/// Below the preset folder, whatever an entry's name says.
bool staysInside(const fs::path& relative) {
    if (relative.empty() || relative.is_absolute() || !relative.has_filename()) return false;
    for (const fs::path& part : relative)
        if (part == "..") return false;
    return true;
}

/// Where a factory preset goes, seen from the preset folder; empty for any other entry.
fs::path factoryPresetPath(std::string_view entry) {
    if (!entry.starts_with(kFactoryPrefix)) return {};
    const fs::path relative = entry.substr(kFactoryPrefix.size());
    return staysInside(relative) ? relative : fs::path();
}
} // namespace

CSingleFXPresetInterface::CSingleFXPresetInterface(Vardo::IPluginBase* plugin,
                                                   IPresetNameStore* names,
                                                   std::span<const std::byte> factoryArchive)
    : CPresetInterface(plugin, names)
    , factoryArchive_(factoryArchive) {
    file_.setPresetName("Default Preset");
}

const FileDialogRequest::Extension& CSingleFXPresetInterface::GetFileType() const {
    static const FileDialogRequest::Extension type{"Insert FX Preset", "fxPreset", ""};
    return type;
}

// ---- Names -------------------------------------------------------------------------------------

void CSingleFXPresetInterface::SetPresetName(const char* name) {
    // The browser may lend us its own text.
    const std::string copy = name != nullptr ? name : "";
    if (names() != nullptr) names()->setCurrentPresetName(copy.c_str());
    if (browser() != nullptr) browser()->setText(copy.c_str());
}

const char* CSingleFXPresetInterface::GetCurrentPresetName() const {
    return browser() != nullptr ? browser()->getText() : "NewPreset";
}

void CSingleFXPresetInterface::setBrowser(CPresetBrowser* browser) {
    CPresetInterface::setBrowser(browser);
    showStoredName();
}

void CSingleFXPresetInterface::showStoredName() {
    if (names() != nullptr && browser() != nullptr)
        browser()->setText(names()->currentPresetName());
}

// ---- Folder ------------------------------------------------------------------------------------

const char* CSingleFXPresetInterface::GetPresetFolder() {
    if (!folderGiven_) CPresetInterface::SetPresetFolder(Core::getContentLocation());
    return CPresetInterface::GetPresetFolder();
}

void CSingleFXPresetInterface::SetPresetFolder(const char* folder) {
    folderGiven_ = true;
    CPresetInterface::SetPresetFolder(folder);
}

void CSingleFXPresetInterface::RescanPresets() {
    if (!folderGiven_) Core::makeContentLocation();
    CPresetInterface::RescanPresets();
}

void CSingleFXPresetInterface::Notify(CBaseObject* /*sender*/, const char* message) {
    if (message != kNotifyPresetFolderChanged) return;
    folderGiven_ = false;
    RescanPresets();
}

void CSingleFXPresetInterface::AddPresetFile(const char* folder,
                                             const char* fileName,
                                             bool inSubFolder) {
    if (!inSubFolder && presetBaseName(fileName) == kHiddenPreset) return;
    CPresetInterface::AddPresetFile(folder, fileName, inSubFolder);
}

PresetNameProblem CSingleFXPresetInterface::FindNameProblem(const std::string& folder,
                                                            const std::string& name) {
    std::error_code error; // a folder that is missing is compared by its name
    if (name == kHiddenPreset &&
        (folder == GetPresetFolder() || fs::equivalent(folder, GetPresetFolder(), error)))
        return PresetNameProblem::kDefault;
    return CPresetInterface::FindNameProblem(folder, name);
}

// ---- Loading and saving ------------------------------------------------------------------------

bool CSingleFXPresetInterface::LoadPresetFile(const char* path) {
    if (!file_.Load(plugin(), path)) return false;
    SetPresetName(file_.GetPresetName());
    return true;
}

bool CSingleFXPresetInterface::SelectPreset(int index) {
    const PresetEntry* entry = GetPresetEntry(index);
    if (entry != nullptr && !LoadPresetFile(std::string(entry->path).c_str())) return false;
    setCurrentIndex(entry != nullptr ? index : -1);
    return entry != nullptr;
}

bool CSingleFXPresetInterface::SavePreset(const char* text, PresetPlace place) {
    if (text == nullptr) return false;
    const std::string path = pathFor(text, place);
    std::error_code error;
    fs::create_directories(fs::path(path).parent_path(), error); // failing, the file fails too
    return file_.Save(plugin(), path.c_str());
}

void CSingleFXPresetInterface::ResetToDefaultSettings() {
    if (plugin() != nullptr) {
        const int count = plugin()->getNumParameters();
        const auto each = [this, count](auto&& act) {
            for (int i = 0; i < count; ++i)
                if (Vardo::IPluginParameter* parameter = plugin()->getParameter(i)) act(*parameter);
        };
        // Nobody hears of a value while others are still the old ones.
        each([](Vardo::IPluginParameter& p) { p.setNotificationsOn(false); });
        each([](Vardo::IPluginParameter& p) { p.resetToDefault(); });
        each([](Vardo::IPluginParameter& p) { p.setNotificationsOn(true); });
        each([](Vardo::IPluginParameter& p) { p.notifyAll(); });
    }
    SetPresetName(kHiddenPreset);
    setCurrentIndex(-1);
}

// ---- Factory presets ---------------------------------------------------------------------------

void CSingleFXPresetInterface::RestoreFactoryPresets(CView* view, PresetContinuation then) {
    PresetMessages::ask(view, "Warning",
                        "This will overwrite all presets with the same name! Are you sure?",
                        {"OK", "Cancel"}, [this, then = std::move(then)](bool yes) {
                            const bool complete = !yes || writeFactoryPresets();
                            if (then) then(complete);
                        });
}

bool CSingleFXPresetInterface::HasFactoryPresets() const {
    CResourceArchive& archive = CResourceArchive::instance();
    archive.open(factoryArchive_.data(), factoryArchive_.size());
    bool any = false;
    for (std::size_t i = 0; i < archive.count(); ++i)
        any |= !factoryPresetPath(archive.entryName(i)).empty();
    archive.close();
    return any;
}

bool CSingleFXPresetInterface::writeFactoryPresets() {
    CResourceArchive& archive = CResourceArchive::instance();
    if (!archive.open(factoryArchive_.data(), factoryArchive_.size()))
        return factoryArchive_.empty();
    bool complete = true;
    for (std::size_t i = 0; i < archive.count(); ++i) {
        const fs::path relative = factoryPresetPath(archive.entryName(i));
        if (relative.empty()) continue;
        const fs::path target = fs::path(GetPresetFolder()) / relative;
        std::error_code error;
        fs::create_directories(target.parent_path(), error);
        std::size_t size = 0;
        const std::byte* data = archive.find(archive.entryName(i), size);
        complete &= data != nullptr && Core::writeFileAtomically(target, std::span(data, size));
        archive.free(data);
    }
    archive.close();
    return complete;
}

} // namespace Sorel
