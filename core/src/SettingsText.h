// The text of a settings file: lines `name = value`, and whatever else people write there.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace Core {

/// A name that can stand in front of the `=` as it is: printable, no `=`, no `#` in front, no
/// blank at either end.
bool isSettingName(std::string_view name) noexcept;

/// The value of the first line with that name. Names and values are free of blanks around them; a
/// backslash writes what could not stand there: \\, \n, \r, \t, and \s for a blank at an end.
std::optional<std::string> findSetting(std::string_view text, std::string_view name);

/// The text with that one value set, every other line as it was, comments and unknown ones too.
std::string withSetting(std::string_view text, std::string_view name, std::string_view value);

} // namespace Core
