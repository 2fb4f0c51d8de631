// Lists of addresses (text/uri-list) as files.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Sorel {

/// The path of a "file:" address on this machine; empty for any other.
std::string pathOfUri(std::string_view uri);
/// The paths in a text/uri-list; addresses of other kinds and comments are left out. A symbolic
/// link is given as the file it leads to.
std::vector<std::string> pathsOfUriList(std::string_view list);

} // namespace Sorel
