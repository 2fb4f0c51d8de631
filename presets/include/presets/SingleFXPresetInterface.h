// The presets of one plug-in: ".fxPreset" files in the content folder.
#pragma once

#include "presets/PresetInterface.h"
#include "presets/SinglePresetFile.h"

#include <cstddef>
#include <span>

namespace Sorel {

/// The preset folder is the content location itself. It is looked up with every use, since other
/// instances may change it, and made by RescanPresets and SavePreset: a host that scans
/// plug-ins leaves no folders behind.
class CSingleFXPresetInterface : public CPresetInterface {
  public:
    /// `factoryArchive` holds the factory presets under "presets/", and stays valid.
    explicit CSingleFXPresetInterface(Vardo::IPluginBase* plugin,
                                      IPresetNameStore* names = nullptr,
                                      std::span<const std::byte> factoryArchive = {});

    void SetPresetName(const char* name) override;
    const char* GetCurrentPresetName() const override;
    const char* GetPresetFolder() override;
    void RescanPresets() override;
    bool SelectPreset(int index) override;
    void ResetToDefaultSettings() override;
    bool SavePreset(const char* text, PresetPlace place) override;
    void Notify(CBaseObject* sender, const char* message) override;
    const FileDialogRequest::Extension& GetFileType() const override;
    std::int32_t GetBrowserFeatures() const override {
        return kOffersRestore | kOffersEditing | kOffersDefault;
    }
    void RestoreFactoryPresets(CView* view, PresetContinuation then) override;
    /// Counts instead of the content location.
    void SetPresetFolder(const char* folder) override;
    /// Passes over a "Default" in the preset folder itself.
    void AddPresetFile(const char* folder, const char* fileName, bool inSubFolder) override;
    PresetNameProblem FindNameProblem(const std::string& folder, const std::string& name) override;
    bool HasFactoryPresets() const override;
    void setBrowser(CPresetBrowser* browser) override;

    /// The browser shows the name that the plug-in keeps: after its state was replaced.
    void showStoredName();
    /// The name inside the last file loaded or saved.
    virtual const char* GetLoadedPresetName() const { return file_.GetPresetName(); }
    /// Gives the plug-in what the file holds, and its name with it; false when the file cannot be
    /// opened, and then nothing changed.
    virtual bool LoadPresetFile(const char* path);

  private:
    bool writeFactoryPresets();

    CSinglePresetFile file_;
    bool folderGiven_ = false; // by SetPresetFolder
    std::span<const std::byte> factoryArchive_;
};

} // namespace Sorel
