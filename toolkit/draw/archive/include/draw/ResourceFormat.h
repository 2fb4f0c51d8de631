// The layout of a RESOURCE2 archive, shared by its reader and its writer.
//
//   offset          size    field
//   0               12      "RESOURCE2", three zero bytes
//   12              4       D, where the directory's header stands; 20
//   16              4       format word, 0x2000; nobody reads it
//   D               4       packer word, of the packer's choice; nobody reads it
//   D + 4           4       where the data area starts, counted from D
//   D + 8           4       size of the directory, unpacked
//   D + 12          4       size of the directory, packed
//   D + 16          4       number of entries
//   D + 20          ...     the directory, a zlib stream of one record per entry
//   data area       ...     the entries' data, back to back
//
// A record: name (256 bytes, ends in a zero byte), unpacked size, packed size, offset in the data
// area. A packed entry is a zlib stream. A stored one, its packed size -1, is scrambled. All
// numbers are little-endian, 32 bits.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace Sorel::ResourceFormat {

inline constexpr std::string_view kMagic = "RESOURCE2";
inline constexpr std::size_t kMagicRead = 8; // characters that tell an archive: not the digit
inline constexpr std::uint32_t kFormatWord = 0x2000;

inline constexpr std::size_t kHeaderBytes = 20;
inline constexpr std::size_t kDirectoryHeaderBytes = 20;
inline constexpr std::size_t kRecordBytes = 268;
inline constexpr std::size_t kNameBytes = 256;
inline constexpr std::int32_t kStored = -1;

// Offsets of fields in the header, in the directory's header and in a record.
inline constexpr std::size_t kDirectoryOffsetAt = 12;
inline constexpr std::size_t kFormatWordAt = 16;
inline constexpr std::size_t kPackerWordAt = 0;
inline constexpr std::size_t kDataOffsetAt = 4;
inline constexpr std::size_t kDirectorySizeAt = 8;
inline constexpr std::size_t kDirectoryPackedAt = 12;
inline constexpr std::size_t kEntryCountAt = 16;
inline constexpr std::size_t kUnpackedSizeAt = 256;
inline constexpr std::size_t kPackedSizeAt = 260;
inline constexpr std::size_t kOffsetAt = 264;

// What a reader accepts and a writer makes: archives are trusted no more than any other input.
inline constexpr std::size_t kMaxEntryBytes = std::size_t{64} << 20;
inline constexpr std::size_t kMaxEntries = 4096;

/// Scrambles the bytes of one stored entry, or restores them: the step is its own inverse.
/// A key of two bytes repeats from the entry's first byte on.
void scramble(std::span<std::byte> entry) noexcept;

} // namespace Sorel::ResourceFormat
