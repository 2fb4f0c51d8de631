#include "PresetMenu.h"

#include <string>
#include <utility>

namespace Sorel {

namespace {

CMenuItem* addCommand(COptionMenu& menu, const char* title, PresetCommand command) {
    CMenuItem* item = menu.addEntry(title);
    item->setTag(static_cast<std::int32_t>(command));
    return item;
}

void addSeparator(COptionMenu& menu) { menu.addSeparator()->setTag(kNoTag); }

void addCommands(COptionMenu& menu, const IPresetBrowserInterface& presets) {
    const std::int32_t features = presets.GetBrowserFeatures();
    addCommand(menu, "Save Preset", PresetCommand::kSave);
    addCommand(menu, "Save Preset as..", PresetCommand::kSaveAs);
    addSeparator(menu);
    if ((features & kOffersEditing) != 0) {
        const bool hasCurrent = presets.GetPresetEntry(presets.GetCurrentPresetIndex()) != nullptr;
        addCommand(menu, "Delete Preset", PresetCommand::kDelete)->setEnabled(hasCurrent);
        addCommand(menu, "Rename Preset", PresetCommand::kRename)->setEnabled(hasCurrent);
        addSeparator(menu);
    }
    if ((features & kOffersGoToFolder) != 0)
        addCommand(menu, "Go to Preset folder", PresetCommand::kGoToFolder);
    if ((features & kOffersRestore) != 0)
        addCommand(menu, "Restore Factory Presets", PresetCommand::kRestore)
            ->setEnabled(presets.HasFactoryPresets());
    if ((features & (kOffersGoToFolder | kOffersRestore)) != 0) addSeparator(menu);
    if ((features & kOffersDefault) != 0) {
        addCommand(menu, "Default Settings", PresetCommand::kDefault);
        addSeparator(menu);
    }
}

/// `count` presets are in the menu already; true when this is the current one.
bool addPreset(COptionMenu& menu, const IPresetBrowserInterface& presets, int index, int& count) {
    const PresetEntry* entry = presets.GetPresetEntry(index);
    if (entry == nullptr || count >= kMaxPresetsInMenu) return false;
    CMenuItem* item = menu.addEntry((std::to_string(++count) + " - " + entry->name).c_str());
    item->setTag(kFirstPresetTag + index);
    if (index != presets.GetCurrentPresetIndex()) return false;
    item->setChecked(true);
    menu.setCurrent(menu.getNbEntries() - 1);
    return true;
}

struct Folder {
    std::string name;
    std::vector<int> presets;
};

/// In the order of their first presets.
std::vector<Folder> foldersOf(const IPresetBrowserInterface& presets) {
    std::vector<Folder> folders;
    for (int i = 0; i < presets.GetPresetCount(); ++i) {
        const auto& name = presets.GetPresetEntry(i)->folder;
        if (!name) continue;
        // The list is in order: a folder's presets stand together.
        if (folders.empty() || folders.back().name != *name) folders.push_back({*name, {}});
        folders.back().presets.push_back(i);
    }
    return folders;
}

} // namespace

void fillPresetMenu(COptionMenu& menu, const IPresetBrowserInterface& presets) {
    addCommands(menu, presets);
    for (const Folder& folder : foldersOf(presets)) {
        const auto submenu = Counted<COptionMenu>::make(CRect{}, nullptr, 0);
        int count = 0;
        bool hasCurrent = false;
        for (const int index : folder.presets)
            hasCurrent |= addPreset(*submenu, presets, index, count);
        CMenuItem* item = menu.addSubmenu(folder.name.c_str(), submenu.get());
        item->setTag(kNoTag);
        item->setChecked(hasCurrent);
    }
    int count = 0;
    for (int i = 0; i < presets.GetPresetCount(); ++i)
        if (!presets.GetPresetEntry(i)->folder) addPreset(menu, presets, i, count);
    // Without presets no line is needed before them.
    const int last = menu.getNbEntries() - 1;
    if (menu.getEntry(last)->isSeparator()) menu.removeEntry(last);
}

std::vector<int> presetsInMenuOrder(const IPresetBrowserInterface& presets) {
    std::vector<int> order;
    for (const bool inFolder : {true, false})
        for (int i = 0; i < presets.GetPresetCount(); ++i)
            if (presets.GetPresetEntry(i)->folder.has_value() == inFolder) order.push_back(i);
    return order;
}

} // namespace Sorel
