// An error that the person at the keyboard can mend.
#pragma once

#include <stdexcept>

namespace Standalone {

/// One line for standard error: what is wrong, and what to do next. Ends the program with status 2.
class UserError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

} // namespace Standalone
