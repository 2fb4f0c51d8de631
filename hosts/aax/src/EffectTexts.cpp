// How the texts and ids of an effect are made.
#include "EffectTexts.h"

#include "core/Utf8.h"

namespace Vardo::Aax {

namespace {
constexpr std::size_t kShortLengths[] = {16, 8, 4};

// The C library's idea of small letters depends on the user's language.
char idCharacter(char c) {
    if (c == ' ') return '_';
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}
} // namespace

std::string effectId(const PluginDescription& record) {
    std::string id = "com." + record.vendorName + "." + record.effectName;
    for (char& c : id)
        c = idCharacter(c);
    return id;
}

std::vector<std::string> effectNames(const PluginDescription& record) {
    const std::string full = record.effectName + " (AAX)";
    std::vector<std::string> names{full};
    for (const std::size_t length : kShortLengths)
        names.push_back(full.substr(0, Core::Utf8::boundaryAtOrBefore(full, length)));
    return names;
}

std::string auxOutputName(const PluginDescription& record, int number) {
    return record.effectName + " Out" + std::to_string(number);
}

std::uint32_t nativePluginId(const PluginDescription& record, Algorithm algorithm) {
    return record.uniqueId + static_cast<std::uint32_t>(algorithm);
}

bool takesMidi(const PluginDescription& record) {
    return record.category == kCategoryInstrument || record.category == kCategorySynth;
}

} // namespace Vardo::Aax
