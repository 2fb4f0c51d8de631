// Replaces a file as a whole: readers, and a crash, see the old content or the new one.
#pragma once

#include <cstddef>
#include <filesystem>
#include <span>
#include <string_view>

namespace Core {

/// Writes a temporary file beside `path`, brings it to the disk and gives it the name `path`.
/// The folder must be there. A link is followed, so that what it points to is replaced; the
/// permissions of a file that is replaced stay, a new one gets the user's usual ones.
/// Threads: any but the audio thread; the last of two writers at the same time wins.
/// Fails: false, with the old file untouched and nothing left behind; also for a file that is
///        protected against writing.
bool writeFileAtomically(const std::filesystem::path& path, std::span<const std::byte> content);
bool writeFileAtomically(const std::filesystem::path& path, std::string_view content);

} // namespace Core
