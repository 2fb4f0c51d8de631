// The menu of a preset browser: its items, and what each of them stands for.
#pragma once

#include "controls/OptionMenu.h"
#include "presets/PresetInterface.h"

#include <cstdint>
#include <vector>

namespace Sorel {

/// Tags of the items. They say alone what an item does: which items there are, and so their places,
/// depends on the interface.
enum class PresetCommand : std::int32_t {
    kSave = 0,
    kSaveAs = 1,
    kDelete = 2,
    kRename = 3,
    kGoToFolder = 4,
    kRestore = 5,
    kDefault = 6,
};
/// Tag of the preset with index 0; those after it follow.
inline constexpr std::int32_t kFirstPresetTag = 0x1000;
/// Of what cannot be chosen.
inline constexpr std::int32_t kNoTag = -1;

/// Presets in one menu; more are reached with the arrows.
inline constexpr int kMaxPresetsInMenu = 255;

/// Fills an empty menu from the list as it is: commands, folders as sub-menus, presets without a
/// folder; each menu counts its presets from 1. The current preset, and the folder it is in, are
/// ticked.
void fillPresetMenu(COptionMenu& menu, const IPresetBrowserInterface& presets);

/// The indices of all presets as the menu shows them: those in folders, then those without.
std::vector<int> presetsInMenuOrder(const IPresetBrowserInterface& presets);

} // namespace Sorel
