// What a preset browser drives: the list of presets, and what can be done with them.
#pragma once

#include "controls/Control.h"
#include "platform/FileDialog.h"
#include "presets/PresetList.h"
#include "presets/PresetName.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace Vardo {
class IPluginBase;
}

namespace Sorel {

class CPresetBrowser;

/// Where the name of the current preset is kept while no editor is open; the plug-in's side
/// implements it. Threads: main thread.
class IPresetNameStore {
  public:
    virtual const char* currentPresetName() const = 0;
    /// Takes a copy.
    virtual void setCurrentPresetName(const char* name) = 0;

  protected:
    ~IPresetNameStore() = default;
};

/// The user chose another preset folder. Compared by its address.
extern const char* const kNotifyPresetFolderChanged;

/// What a browser's menu offers, as bits.
enum PresetBrowserFeature : std::int32_t {
    kOffersRestore = 0x02,    ///< "Restore Factory Presets"
    kOffersGoToFolder = 0x04, ///< "Go to Preset folder"
    kOffersEditing = 0x08,    ///< "Delete Preset" and "Rename Preset"
    kOffersDefault = 0x10,    ///< "Default Settings"
};

/// Goes on after a question. Called at once or from a later idle, or not at all: when the window
/// closes with the question open, nobody is told.
using PresetContinuation = std::function<void(bool yes)>;

/// Texts are UTF-8, paths have forward slashes, and indices count the entries of the list from 0,
/// -1 for none. Entries and their texts are good until the list changes.
/// Questions appear over the frame of `view`; where there is none, the answer is no.
/// Threads: GUI thread; waits for the disk.
/// Life:    outlives every browser that shows it.
class IPresetBrowserInterface : public CControlListener {
  public:
    virtual ~IPresetBrowserInterface() = default;

    virtual int GetPresetCount() const = 0;
    /// Null out of range.
    virtual const PresetEntry* GetPresetEntry(int index) const = 0;
    /// Becomes the name of the current preset, here and in the browser.
    virtual void SetPresetName(const char* name) = 0;
    /// Null out of range.
    virtual const char* GetPresetName(int index) const = 0;
    /// What the browser shows.
    virtual const char* GetCurrentPresetName() const = 0;
    /// Another name for the current preset's file; the name inside it stays. Never replaces a file.
    virtual RenameResult RenameCurrentPreset(const char* newName) = 0;
    virtual int GetCurrentPresetIndex() const = 0;
    /// Ends in a slash, unless there is none.
    virtual const char* GetPresetFolder() = 0;
    /// Loads an entry and makes it the current one; false, and nothing changed, when its file
    /// cannot be read. Out of range none is current.
    virtual bool SelectPreset(int index) = 0;
    virtual void ResetToDefaultSettings() = 0;
    /// Asks, when there is a file where SavePreset would write.
    virtual void
    ConfirmOverwrite(const char* text, PresetPlace place, CView* view, PresetContinuation then) = 0;
    /// False with the old file untouched.
    virtual bool SavePreset(const char* text, PresetPlace place) = 0;
    /// Asks first. Afterwards no preset is current, whatever the answer; `then` hears false when
    /// the file should go and could not.
    virtual void DeletePreset(int index, CView* view, PresetContinuation then) = 0;
    /// Makes the entry of this file current, and loads nothing; null for none. Where no entry has
    /// it, the current one stays.
    virtual void SelectPresetByName(const char* text, PresetPlace place) = 0;
    /// Reads the folder anew, makes it if need be, and keeps the current preset by its path.
    virtual void RescanPresets() = 0;
    virtual void Notify(CBaseObject* sender, const char* message) = 0;
    virtual const FileDialogRequest::Extension& GetFileType() const = 0;
    /// PresetBrowserFeature bits.
    virtual std::int32_t GetBrowserFeatures() const = 0;
    /// Asks first; `then` hears false when a preset could not be written.
    virtual void RestoreFactoryPresets(CView* view, PresetContinuation then) = 0;
    /// A missing slash at the end is added. Reads nothing.
    virtual void SetPresetFolder(const char* folder) = 0;
    virtual void ClearPresetList() = 0;
    /// Appends what walkPresetFolder finds, if it is a preset.
    virtual void AddPresetFile(const char* folder, const char* fileName, bool inSubFolder) = 0;

    /// Why a preset in `folder` cannot be called so.
    virtual PresetNameProblem FindNameProblem(const std::string& folder,
                                              const std::string& name) = 0;
    /// False: there is nothing to restore.
    virtual bool HasFactoryPresets() const = 0;

    /// A browser enters itself while it is in a window; null when it goes.
    virtual void setBrowser(CPresetBrowser* browser) = 0;
    virtual CPresetBrowser* browser() const = 0;
};

/// Keeps the list, and does what needs no file format: names, deletes, renames.
class CPresetInterface : public IPresetBrowserInterface {
  public:
    /// Both may be null, and outlive this object.
    explicit CPresetInterface(Vardo::IPluginBase* plugin, IPresetNameStore* names = nullptr);
    CPresetInterface(const CPresetInterface&) = delete;
    CPresetInterface& operator=(const CPresetInterface&) = delete;

    int GetPresetCount() const override { return static_cast<int>(entries_.size()); }
    const PresetEntry* GetPresetEntry(int index) const override;
    void SetPresetName(const char* /*name*/) override {}
    const char* GetPresetName(int index) const override;
    const char* GetCurrentPresetName() const override;
    RenameResult RenameCurrentPreset(const char* newName) override;
    int GetCurrentPresetIndex() const override { return currentIndex_; }
    const char* GetPresetFolder() override { return folder_.c_str(); }
    bool SelectPreset(int /*index*/) override { return false; }
    void ResetToDefaultSettings() override {}
    void ConfirmOverwrite(const char* text,
                          PresetPlace place,
                          CView* view,
                          PresetContinuation then) override;
    bool SavePreset(const char* /*text*/, PresetPlace /*place*/) override { return false; }
    void DeletePreset(int index, CView* view, PresetContinuation then) override;
    void SelectPresetByName(const char* text, PresetPlace place) override;
    void RescanPresets() override;
    void Notify(CBaseObject* /*sender*/, const char* /*message*/) override {}
    const FileDialogRequest::Extension& GetFileType() const override;
    std::int32_t GetBrowserFeatures() const override { return 0; }
    void RestoreFactoryPresets(CView* /*view*/, PresetContinuation /*then*/) override {}
    void SetPresetFolder(const char* folder) override;
    void ClearPresetList() override { entries_.clear(); }
    void AddPresetFile(const char* folder, const char* fileName, bool inSubFolder) override;
    PresetNameProblem FindNameProblem(const std::string& folder, const std::string& name) override;
    bool HasFactoryPresets() const override { return false; }
    void setBrowser(CPresetBrowser* browser) override { browser_ = browser; }
    CPresetBrowser* browser() const override { return browser_; }

    // CControlListener: what the browser shows becomes the preset's name; others are ignored
    void valueChanged(CControl* control) override;

  protected:
    void setCurrentIndex(int index) { currentIndex_ = index; }
    Vardo::IPluginBase* plugin() const { return plugin_; }
    IPresetNameStore* names() const { return names_; }
    std::string pathFor(const char* text, PresetPlace place);

  private:
    int indexOf(const std::string& path) const;

    std::string folder_;
    std::vector<PresetEntry> entries_;
    int currentIndex_ = -1;
    CPresetBrowser* browser_ = nullptr;
    Vardo::IPluginBase* plugin_;
    IPresetNameStore* names_;
};

} // namespace Sorel
