// Reads the archives that carry the editor's pictures and fonts inside the binary.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace Sorel {

/// The one reader of the process: opening an archive replaces the one before, closing forgets it.
/// The layout is told in ResourceFormat.h.
/// Threads: the GUI thread alone.
/// Fails:   a block that is no sound archive leaves the reader empty; an entry that is absent or
///          damaged reads as null. Nothing outside the block is ever read, and no size that the
///          block claims is allocated without a bound.
class CResourceArchive {
  public:
    static CResourceArchive& instance() noexcept;

    CResourceArchive(const CResourceArchive&) = delete;
    CResourceArchive& operator=(const CResourceArchive&) = delete;

    /// Reads the directory of an archive of `length` bytes. The block is not copied: it stays where
    /// it is until `close` or the next `open`. False when it is no archive, or a damaged one.
    /// Archives are told by the first eight characters; the ninth, the version, may differ.
    bool open(const void* block, std::size_t length);

    /// The unpacked bytes of the first entry of that name, `size` of them, or null and 0.
    /// They belong to the reader and stay valid until `free`, `close` or the next `open`.
    /// Names are case-sensitive. Each call unpacks anew.
    const std::byte* find(const char* name, std::size_t& size);

    /// Gives back what `find` gave. Any other pointer is ignored.
    void free(const void* buffer) noexcept;

    /// Number of entries; 0 while nothing is open.
    std::size_t count() const noexcept { return records_.size(); }

    /// The name of an entry, valid until `close` or the next `open`; null out of range.
    const char* entryName(std::size_t index) const noexcept;

    bool exists(const char* name) const noexcept;

    /// Frees everything that `find` gave and forgets the archive.
    void close() noexcept;

  private:
    struct Record {
        char name[256];
        std::int32_t unpackedSize;
        std::int32_t packedSize;
        std::uint32_t offset;
    };
    using Buffer = std::unique_ptr<std::byte[]>;

    CResourceArchive() = default;

    bool readDirectory();
    const Record* findRecord(const char* name) const noexcept;

    std::span<const std::byte> block_; // the caller's
    std::span<const std::byte> data_;  // the data area inside the block
    std::vector<Record> records_;
    std::vector<Buffer> handedOut_;
};

} // namespace Sorel
