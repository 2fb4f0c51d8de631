// Names and numbers by which a host knows an effect, from its record.
#pragma once

#include "frame/PluginDescription.h"

#include <cstdint>
#include <string>
#include <vector>

namespace Vardo::Aax {

inline constexpr const char* kManufacturerName = "hovenstad Audio";
/// Of a collection whose first record is not known yet.
inline constexpr const char* kCollectionName = "Vardo_AAX";

inline constexpr std::uint32_t kManufacturerId = fourCharacterCode("Zmtr");

/// The stem pairs of the algorithms, in the order of their ids.
enum class Algorithm : std::uint32_t { monoToMono = 0, monoToStereo = 1, stereoToStereo = 2 };

/// "com.vendor.effect_name": small letters (of ASCII), "_" for blanks.
std::string effectId(const PluginDescription& record);

/// The full name, then the same cut to what narrow displays show: at most 16, 8 and 4 bytes, never
/// within a character.
std::vector<std::string> effectNames(const PluginDescription& record);

/// "Name Out2": the output pair by its number, from 2 on.
std::string auxOutputName(const PluginDescription& record, int number);

/// Differs for each algorithm of each record.
std::uint32_t nativePluginId(const PluginDescription& record, Algorithm algorithm);

/// Whether the effect listens to MIDI.
bool takesMidi(const PluginDescription& record);

} // namespace Vardo::Aax
