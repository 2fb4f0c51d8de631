// Whether analysis goes to the worker: the user's choice for all plug-ins made from now on.
#pragma once

#include "core/Settings.h"

#include <cstring>

namespace Orvel {

inline void writeThreadingSetting(bool threaded) {
    Core::writeSetting(Core::settingsPath(), "THREADING", threaded ? "TRUE" : "FALSE");
}

/// On unless the setting says otherwise. Leaves one of the two words in the settings, so that the
/// choice is there to be found.
inline bool readThreadingSetting() {
    char value[Core::kSettingBufferSize];
    Core::readSetting(Core::settingsPath(), "THREADING", value, "TRUE");
    const bool threaded = std::strcmp(value, "TRUE") == 0;
    writeThreadingSetting(threaded);
    return threaded;
}

} // namespace Orvel
