// Builds the archives that ResourceArchive.h reads.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace Sorel {

/// How an entry lies in the archive. Readers treat both alike: pack what gets smaller by it.
enum class ResourceForm { packed, stored };

struct ResourceEntry {
    std::string name; // 1 to 255 bytes without a zero byte, no other entry's
    std::vector<std::byte> bytes;
    ResourceForm form = ResourceForm::packed;
};

/// An archive of `entries`, in their order; the same entries give the same bytes on every run of
/// one zlib. `packerWord` is a mark of the packer's choice that no reader looks at.
/// Fails: returns an empty vector and says in `error` what is wrong with which entry.
std::vector<std::byte> writeResourceArchive(std::span<const ResourceEntry> entries,
                                            std::uint32_t packerWord,
                                            std::string& error);

} // namespace Sorel
