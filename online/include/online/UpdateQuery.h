// The question to the update server, its answer, and the file that remembers part of it.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace Dorna {

/// What this build runs on, as the server and the support report name it: "WIN_32", "WIN_64" or
/// "LINUX_64".
const char* platformName();

/// A version number holds two decimal digits a part, one per half byte: 0x10004 is "1.0.4",
/// 0x120304 "12.3.4". Bits 16 to 23 are the first part, 8 to 15 the second, 0 to 7 the third.
std::string versionText(std::uint32_t versionNumber);

/// What to GET, without the slash in front.
std::string updateQueryPath(const std::string& webId,
                            std::uint32_t versionNumber,
                            const std::string& interfaceName);

/// Longer values count as none.
inline constexpr std::size_t kMaxReplyValueBytes = 2048;

/// The value of "KEY=value" in a text. A key at the start of a line counts first, then one
/// anywhere that is not the end of a longer word. The value ends with its line, blanks around it
/// left out. False when there is no such key.
bool findReplyValue(std::string_view text, std::string_view key, std::string& value);

/// The address of the product's page, kept in a small file in the user's data folder, below
/// Quillmere and the product's name. Empty when none was kept.
std::string readCachedPage(const std::string& productName);
bool writeCachedPage(const std::string& productName, const std::string& page);
std::filesystem::path pageCacheFile(const std::string& productName);

} // namespace Dorna
