// The base of objects that read and write one kind of file.
#pragma once

#include <cstddef>

namespace Vardo {

/// Knows a file extension, and moves whole files between disk and memory.
/// Threads: main thread; every call may wait for the disk.
class CFileFormat {
  public:
    /// More is read from no file.
    static constexpr std::size_t kMaxBlockBytes = std::size_t{64} << 20;

    /// The whole file at the UTF-8 `path`; `data` is given back with FreeBlock.
    /// Fails: null and 0 for what is no plain file, cannot be opened, or exceeds kMaxBlockBytes.
    virtual void ReadBlock(const char* path, void** data, std::size_t* size);
    /// Replaces the file as a whole. A file that cannot be written stays as it was, and nothing is
    /// reported.
    virtual void WriteBlock(const char* path, const void* data, std::size_t size);
    /// With its dot.
    virtual const char* GetExtension() const = 0;
    /// Null is ignored.
    virtual void FreeBlock(void* data);

    virtual ~CFileFormat() = default;
};

/// Headers of C++ programs: a kind that is known by its extension and never written.
class CFileFormatCppHeader : public CFileFormat {
  public:
    void WriteBlock(const char* /*path*/, const void* /*data*/, std::size_t /*size*/) override {}
    const char* GetExtension() const override { return ".h"; }
};

} // namespace Vardo
