// Test double: shows a number.
#pragma once

#include <string>

template <typename T>
class AAX_CNumberDisplayDelegate {
  public:
    AAX_CNumberDisplayDelegate() = default;
    std::string texts() const { return "number"; }
};
