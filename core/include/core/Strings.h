// Text that crosses class borders without touching the heap.
#pragma once

#include <cstddef>
#include <cstring>

namespace Core {

/// Text as the classes of the plug-in hand it to each other. UTF-8, zero-ended.
class IString {
  public:
    /// Takes a copy of `text`, cut between characters to what fits. A null pointer counts as an
    /// empty text.
    virtual void assign(const char* text) = 0;
    virtual const char* c_str() const = 0;
    virtual ~IString() = default;
};

/// A view of somebody's character buffer as a string. Owns nothing and never allocates: texts
/// longer than capacity - 1 bytes are cut, always zero-ended.
class CString : public IString {
  public:
    /// `characters` has room for `capacity` bytes and outlives this object.
    CString(char* characters, std::size_t capacity) noexcept
        : characters_(characters)
        , capacity_(capacity) {}

    CString& operator=(const IString& other) {
        assign(other.c_str());
        return *this;
    }
    CString& operator=(const CString& other) {
        if (this != &other) assign(other.c_str());
        return *this;
    }
    CString(const CString&) = delete;

    void assign(const char* text) override;
    const char* c_str() const override { return characters_; }

    /// As strcmp, over the first capacity - 1 characters.
    int compare(const char* text) const;
    std::size_t capacity() const noexcept { return capacity_; }

  private:
    char* characters_;
    std::size_t capacity_;
};

/// A string with its own buffer of `size` bytes inside. 32, 64, 128 and 8192 are the usual sizes.
template <std::size_t size>
class CStringBufferd : public CString {
    static_assert(size > 0);

  public:
    CStringBufferd() noexcept
        : CString(buffer_, size) {
        buffer_[0] = 0;
    }
    explicit CStringBufferd(const char* text)
        : CStringBufferd() {
        assign(text);
    }
    CStringBufferd(const CStringBufferd& other)
        : CStringBufferd() {
        assign(other.c_str());
    }
    CStringBufferd& operator=(const CStringBufferd& other) {
        if (this != &other) assign(other.c_str());
        return *this;
    }
    using CString::operator=;

  private:
    char buffer_[size];
};

} // namespace Core
