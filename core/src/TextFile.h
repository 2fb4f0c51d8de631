// Reads small text files that may not be what their name says.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

namespace Core {

/// Larger files are no settings of ours.
inline constexpr std::size_t kMaxTextFileBytes = std::size_t{1} << 20;

enum class ReadResult { done, absent, failed };

/// The whole file. `failed` for anything that is there but is no readable regular file of at most
/// kMaxTextFileBytes; never waits for a pipe or a device. `text` is empty unless `done`.
ReadResult readTextFile(const std::filesystem::path& path, std::string& text);

} // namespace Core
