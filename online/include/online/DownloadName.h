// What a downloaded file is called on this machine.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace Dorna {

/// The last part of an address as a name that is safe in every folder: the query is left out,
/// "%20" and the like are read, and no separator, control character, leading dot or character that
/// some file system forbids remains. UTF-8, at most 200 bytes; "update" when nothing is left.
std::string fileNameOfAddress(std::string_view address);

/// `wanted`, or "name (2).ext", "name (3).ext"... when there is such a file. Empty when hundreds
/// are taken.
std::filesystem::path freeFileName(const std::filesystem::path& wanted);

} // namespace Dorna
