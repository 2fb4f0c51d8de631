// Which Debian package a file came with.
#pragma once

#include "online/SystemSources.h"

#include <filesystem>
#include <optional>

namespace Dorna {

/// Reads the lists and the status file below `root`/var/lib/dpkg and starts no program. Looks for
/// a second at most, and gives nothing when there is no such database or no package has the file.
std::optional<ProgramVersion> packageOfFile(const std::filesystem::path& root,
                                            const std::string& file);

} // namespace Dorna
