// What a module says about each plug-in it contains, before any of them exists.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace Vardo {

/// Four letters as one number, the first in the highest byte.
constexpr std::uint32_t fourCharacterCode(const char (&text)[5]) {
    std::uint32_t code = 0;
    for (int i = 0; i < 4; ++i)
        code = code << 8 | static_cast<std::uint8_t>(text[i]);
    return code;
}

enum PluginCategory : int {
    kCategoryEffect = 1000,
    kCategoryInstrument = 1001,
    kCategorySynth = 1002,
};

/// One record per plug-in of this module. Channel counts are in stereo pairs.
struct PluginDescription {
    std::uint32_t uniqueId = 0;
    std::string effectName;
    std::string productName;
    std::string vendorName;
    int inputPairs = 1;
    int outputPairs = 1;
    int programs = 1;
    std::string versionText;
    int category = kCategoryEffect;
    bool hasSidechain = false;       ///< an adapter then adds a stereo input pair
    std::uint32_t versionNumber = 0; ///< one byte per version field
    int flags = 0;
};

using PluginDescriptionList = std::vector<PluginDescription>;

} // namespace Vardo
