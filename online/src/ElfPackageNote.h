// Reads which package a program file was built for, where the file itself says so.
#pragma once

#include "online/SystemSources.h"

#include <filesystem>
#include <optional>
#include <string_view>

namespace Dorna {

/// From the JSON text of such a note: its "name", "version", and "osCpe" as the vendor.
std::optional<ProgramVersion> parsePackageNote(std::string_view json);

/// Of a 64-bit little-endian ELF file. Source: "Package Metadata for Executable Files", a note of
/// owner "FDO" and type 0xCAFE1A7E, found by the program headers of type PT_NOTE.
/// Nothing for any other file; reads little of it: headers, and note segments of at most 32 KB.
std::optional<ProgramVersion> readElfPackageNote(const std::filesystem::path& file);

} // namespace Dorna
