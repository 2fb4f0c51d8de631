// A few texts per user and product that outlive the process, with defaults for the whole machine.
#pragma once

#include <cstddef>

namespace Core {

/// Longest value, in bytes. The buffer that readSetting fills has room for one more.
inline constexpr std::size_t kMaxSettingLength = 1024;
inline constexpr std::size_t kSettingBufferSize = kMaxSettingLength + 1;

/// Writes the path under which a product keeps its settings. The store below makes a small text
/// file of it: "Software\A\B\" is A/B.conf in the user's configuration folder ($XDG_CONFIG_HOME),
/// or, as the fallback for all users, in one of the machine's ($XDG_CONFIG_DIRS).
/// False, and an empty text, when it does not fit into `size` bytes.
bool makeSettingsPath(char* buffer, std::size_t size, const char* vendor, const char* product);

/// The path of this product's own settings.
const char* settingsPath();

/// Fills `value` (kSettingBufferSize bytes) and gives true when a value was found. The user's
/// counts first; one found for the whole machine is copied to the user unless it is empty. With
/// none, `defaultValue` is the result and is written to the user; null gives an empty text and
/// writes nothing.
/// Threads: any but the audio thread; reads and may write a file.
bool readSetting(const char* path, const char* name, char* value, const char* defaultValue);

/// Replaces one value of the user and leaves all others alone, whoever else is writing: threads
/// and processes take turns. Nothing is written when the value stands there already.
/// False when it could not be kept, and for an empty or too long value.
/// Threads: any but the audio thread; may wait up to two seconds for another process.
bool writeSetting(const char* path, const char* name, const char* value);

} // namespace Core
