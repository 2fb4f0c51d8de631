// Test double: a text that owns its characters.
#pragma once

#include "AAX.h"

class AAX_CString final : public AAX_IString {
  public:
    AAX_CString() = default;
    explicit AAX_CString(const char* text)
        : text_(text) {}
    const char* Get() const override { return text_.c_str(); }
    void Set(const char* text) override { text_ = text; }

  private:
    std::string text_;
};
