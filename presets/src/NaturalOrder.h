// The order in which people expect names: letters without regard to case, numbers by their value.
#pragma once

#include <string_view>

namespace Sorel {

/// Whether `a` stands before `b`; both are UTF-8. The same in every locale, and total: names that
/// differ in case or leading zeros alone are told apart by their bytes.
bool naturallyBefore(std::string_view a, std::string_view b);

} // namespace Sorel
