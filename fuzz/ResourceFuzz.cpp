// Archives from anywhere: no byte outside them is read, names end, and sizes stay bounded.
//
// The directory is packed, so mutations of a whole archive seldom get past it. The first byte of
// the input therefore says what the rest is: an archive (even), or the unpacked directory and data
// area of one (odd), behind two bytes with the number of records.
#include "core/LittleEndian.h"
#include "draw/ResourceArchive.h"
#include "draw/ResourceFormat.h"

#include <zlib.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <span>
#include <vector>

namespace {

using Bytes = std::span<const std::uint8_t>;
namespace Format = Sorel::ResourceFormat;

volatile uLong checksum = 0; // who reads all bytes must show for it, or reads none

void require(bool condition) {
    if (!condition) std::abort();
}

std::vector<std::uint8_t> archiveOf(std::size_t records, Bytes content) {
    const std::size_t directorySize = std::min(records * Format::kRecordBytes, content.size());
    uLongf packedSize = compressBound(directorySize);
    std::vector<std::uint8_t> packed(packedSize);
    require(compress2(packed.data(), &packedSize, content.data(), directorySize, 1) == Z_OK);

    std::vector<std::uint8_t> archive(Format::kHeaderBytes + Format::kDirectoryHeaderBytes);
    std::memcpy(archive.data(), Format::kMagic.data(), Format::kMagic.size());
    auto* const header = reinterpret_cast<std::byte*>(archive.data());
    Core::writeU32(header + Format::kDirectoryOffsetAt, Format::kHeaderBytes);
    std::byte* const directory = header + Format::kHeaderBytes;
    const auto write = [directory](std::size_t at, std::size_t value) {
        Core::writeU32(directory + at, static_cast<std::uint32_t>(value));
    };
    write(Format::kDataOffsetAt, Format::kDirectoryHeaderBytes + packedSize);
    write(Format::kDirectorySizeAt, directorySize);
    write(Format::kDirectoryPackedAt, packedSize);
    write(Format::kEntryCountAt, records);
    archive.insert(archive.end(), packed.begin(), packed.begin() + packedSize);
    archive.insert(archive.end(), content.begin() + directorySize, content.end());
    return archive;
}

// Every entry, by name; all its bytes are read, so that the sanitizer sees a size that lies.
void readAll(Bytes archive) {
    Sorel::CResourceArchive& reader = Sorel::CResourceArchive::instance();
    // An exact heap block: one byte too far is a report.
    const auto block = std::make_unique<std::uint8_t[]>(archive.size());
    std::copy(archive.begin(), archive.end(), block.get());
    const bool isOpen = reader.open(block.get(), archive.size());
    require(isOpen || reader.count() == 0);
    for (std::size_t i = 0; i < reader.count(); ++i) {
        const char* const name = reader.entryName(i);
        require(std::strlen(name) < Format::kNameBytes && reader.exists(name));
        std::size_t size = 0;
        const std::byte* const found = reader.find(name, size);
        require(found != nullptr || size == 0);
        require(size <= Format::kMaxEntryBytes + 20);
        checksum = crc32(0, reinterpret_cast<const Bytef*>(found), static_cast<uInt>(size));
        reader.free(found);
    }
    reader.close();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 3) return 0;
    const Bytes input(data, size);
    if ((data[0] & 1) == 0) {
        readAll(input.subspan(1));
    } else {
        const std::size_t records = data[1] + 256U * (data[2] & 1U);
        readAll(archiveOf(records, input.subspan(3)));
    }
    return 0;
}
