// Test double: shows one of two texts.
#pragma once

#include <string>

template <typename T>
class AAX_CBinaryDisplayDelegate {
  public:
    AAX_CBinaryDisplayDelegate(const char* off, const char* on)
        : texts_(std::string(off) + "/" + on) {}
    std::string texts() const { return texts_; }

  private:
    std::string texts_;
};
