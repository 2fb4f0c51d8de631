#include "draw/ResourceWriter.h"

#include "core/LittleEndian.h"
#include "draw/ResourceFormat.h"

#include <zlib.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <set>
#include <string_view>

namespace Sorel {

namespace {
using namespace ResourceFormat;
using Bytes = std::vector<std::byte>;

Bytes deflated(std::span<const std::byte> bytes) {
    uLongf size = compressBound(bytes.size());
    Bytes packed(size);
    const int result =
        compress2(reinterpret_cast<Bytef*>(packed.data()), &size,
                  reinterpret_cast<const Bytef*>(bytes.data()), bytes.size(), Z_BEST_COMPRESSION);
    packed.resize(result == Z_OK ? size : 0);
    return packed;
}

std::string problemOf(std::span<const ResourceEntry> entries) {
    if (entries.size() > kMaxEntries) return "too many entries";
    std::set<std::string_view> names;
    for (const ResourceEntry& entry : entries) {
        if (entry.name.empty() || entry.name.size() >= kNameBytes ||
            entry.name.find('\0') != std::string::npos)
            return "an entry's name must have 1 to 255 bytes: \"" + entry.name + "\"";
        if (!names.insert(entry.name).second) return "two entries are called " + entry.name;
        if (entry.bytes.size() > kMaxEntryBytes) return entry.name + " is larger than 64 MB";
    }
    return {};
}

void append(Bytes& to, std::span<const std::byte> bytes) {
    to.insert(to.end(), bytes.begin(), bytes.end());
}

// Puts the entry's data behind `data` and fills its record of the directory.
void addEntry(const ResourceEntry& entry, std::byte* record, Bytes& data) {
    const bool isPacked = entry.form == ResourceForm::packed;
    Bytes bytes = isPacked ? deflated(entry.bytes) : entry.bytes;
    if (!isPacked) scramble(bytes);
    std::memcpy(record, entry.name.data(), entry.name.size());
    Core::writeU32(record + kUnpackedSizeAt, static_cast<std::uint32_t>(entry.bytes.size()));
    Core::writeI32(record + kPackedSizeAt,
                   isPacked ? static_cast<std::int32_t>(bytes.size()) : kStored);
    Core::writeU32(record + kOffsetAt, static_cast<std::uint32_t>(data.size()));
    append(data, bytes);
}
} // namespace

std::vector<std::byte> writeResourceArchive(std::span<const ResourceEntry> entries,
                                            std::uint32_t packerWord,
                                            std::string& error) {
    error = problemOf(entries);
    if (!error.empty()) return {};

    Bytes directory(entries.size() * kRecordBytes);
    Bytes data;
    for (std::size_t i = 0; i < entries.size(); ++i)
        addEntry(entries[i], &directory[i * kRecordBytes], data);
    const Bytes packed = deflated(directory);

    const std::size_t dataOffset = kDirectoryHeaderBytes + packed.size();
    if (kHeaderBytes + dataOffset + data.size() > std::numeric_limits<std::int32_t>::max()) {
        error = "the archive would be larger than 2 GB";
        return {};
    }
    Bytes archive(kHeaderBytes + kDirectoryHeaderBytes);
    std::memcpy(archive.data(), kMagic.data(), kMagic.size());
    Core::writeU32(&archive[kDirectoryOffsetAt], static_cast<std::uint32_t>(kHeaderBytes));
    Core::writeU32(&archive[kFormatWordAt], kFormatWord);
    std::byte* const header = &archive[kHeaderBytes];
    Core::writeU32(header + kPackerWordAt, packerWord);
    Core::writeU32(header + kDataOffsetAt, static_cast<std::uint32_t>(dataOffset));
    Core::writeU32(header + kDirectorySizeAt, static_cast<std::uint32_t>(directory.size()));
    Core::writeU32(header + kDirectoryPackedAt, static_cast<std::uint32_t>(packed.size()));
    Core::writeU32(header + kEntryCountAt, static_cast<std::uint32_t>(entries.size()));
    append(archive, packed);
    append(archive, data);
    return archive;
}

} // namespace Sorel
