#include "ElfPackageNote.h"

#include "core/LittleEndian.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <vector>

namespace Dorna {

namespace {
using Bytes = std::vector<std::byte>;

constexpr std::uint32_t kNoteSegment = 4;
constexpr std::uint32_t kPackageNote = 0xCAFE1A7E;
constexpr std::size_t kMaxNotes = std::size_t{32} << 10; // bytes of one segment
constexpr std::uint32_t kMaxSegments = 256;
// 64-bit ELF: where things stand in the file's header and in those of its segments.
constexpr std::size_t kFileHeader = 64;
constexpr std::size_t kSegmentHeader = 56;
constexpr std::size_t kSegmentsAt = 32;
constexpr std::size_t kSegmentCountAt = 56;
constexpr std::size_t kOffsetAt = 8;
constexpr std::size_t kSizeAt = 32;

std::uint64_t readU64(const std::byte* bytes) {
    return std::uint64_t{Core::readU32(bytes + 4)} << 32 | Core::readU32(bytes);
}

/// Empty when the file does not have that many there.
Bytes readAt(std::ifstream& file, std::uint64_t offset, std::size_t size) {
    if (offset > static_cast<std::uint64_t>(INT64_MAX)) return {};
    Bytes bytes(size);
    file.clear();
    file.seekg(static_cast<std::streamoff>(offset));
    file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(size));
    if (file.gcount() != static_cast<std::streamsize>(size)) bytes.clear();
    return bytes;
}

std::string_view textAt(const Bytes& bytes, std::size_t at, std::size_t size) {
    return {reinterpret_cast<const char*>(bytes.data()) + at, size};
}

std::string_view packageNoteIn(const Bytes& notes) {
    constexpr std::size_t kHeader = 12;
    const auto aligned = [](std::uint64_t size) { return (size + 3) & ~std::uint64_t{3}; };
    for (std::uint64_t at = 0; at + kHeader <= notes.size();) {
        const std::uint32_t nameSize = Core::readU32(&notes[at]);
        const std::uint32_t size = Core::readU32(&notes[at + 4]);
        const std::uint64_t name = at + kHeader;
        const std::uint64_t text = name + aligned(nameSize);
        if (text + size > notes.size()) return {};
        if (Core::readU32(&notes[at + 8]) == kPackageNote &&
            textAt(notes, name, nameSize) == std::string_view("FDO\0", 4))
            return textAt(notes, text, size);
        at = text + aligned(size);
    }
    return {};
}

/// The text value of a key in a flat JSON object. Escapes do not occur in names and versions: a
/// value that has one counts as missing.
std::string jsonValue(std::string_view json, std::string_view key) {
    constexpr std::string_view kBlanks = " \t\r\n";
    const std::string quoted = '"' + std::string(key) + '"';
    std::size_t at = json.find(quoted);
    if (at == std::string_view::npos) return {};
    at = json.find_first_not_of(kBlanks, at + quoted.size());
    if (at == std::string_view::npos || json[at] != ':') return {};
    at = json.find_first_not_of(kBlanks, at + 1);
    if (at == std::string_view::npos || json[at] != '"') return {};
    const std::size_t end = json.find_first_of("\"\\", at + 1);
    if (end == std::string_view::npos || json[end] != '"') return {};
    return std::string(json.substr(at + 1, end - at - 1));
}
} // namespace

std::optional<ProgramVersion> parsePackageNote(std::string_view json) {
    const ProgramVersion program{jsonValue(json, "name"), jsonValue(json, "osCpe"),
                                 jsonValue(json, "version")};
    if (program.name.empty() && program.version.empty()) return std::nullopt;
    return program;
}

std::optional<ProgramVersion> readElfPackageNote(const std::filesystem::path& path) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error)) return std::nullopt;
    std::ifstream file(path, std::ios::binary);
    const Bytes header = readAt(file, 0, kFileHeader);
    constexpr std::string_view kMagic("\x7F"
                                      "ELF\x02\x01"); // 64 bits, little-endian
    if (header.empty() || textAt(header, 0, kMagic.size()) != kMagic) return std::nullopt;

    const std::uint32_t count =
        std::min(Core::readU32(&header[kSegmentCountAt]) & 0xFFFFU, kMaxSegments);
    const Bytes segments = readAt(file, readU64(&header[kSegmentsAt]), count * kSegmentHeader);
    for (std::size_t at = 0; at < segments.size(); at += kSegmentHeader) {
        const std::uint64_t size = readU64(&segments[at + kSizeAt]);
        if (Core::readU32(&segments[at]) != kNoteSegment || size > kMaxNotes) continue;
        const Bytes notes = readAt(file, readU64(&segments[at + kOffsetAt]), size);
        if (const std::string_view json = packageNoteIn(notes); !json.empty())
            return parsePackageNote(json);
    }
    return std::nullopt;
}

} // namespace Dorna
