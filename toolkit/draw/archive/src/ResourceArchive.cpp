#include "draw/ResourceArchive.h"

#include "core/LittleEndian.h"
#include "draw/ResourceFormat.h"

#include <zlib.h>

#include <algorithm>
#include <cstring>
#include <new>

namespace Sorel {

namespace {
using namespace ResourceFormat;
using Bytes = std::span<const std::byte>;

// Some packers let a stream run on a little behind its stated size; the room for it is harmless.
constexpr std::size_t kDirectorySlack = 100;
constexpr std::size_t kEntrySlack = 20;

// `length` bytes from `offset` on, or nothing when the block does not hold them all.
bool slice(Bytes from, std::size_t offset, std::size_t length, Bytes& result) noexcept {
    if (offset > from.size() || length > from.size() - offset) return false;
    result = from.subspan(offset, length);
    return true;
}

// A whole zlib stream into at most `room` bytes; `size` becomes what it had. Null when it is none,
// or has more.
std::unique_ptr<std::byte[]> inflated(Bytes packed, std::size_t room, std::size_t& size) {
    std::unique_ptr<std::byte[]> buffer(new (std::nothrow) std::byte[room]);
    uLongf written = room;
    if (buffer == nullptr ||
        uncompress(reinterpret_cast<Bytef*>(buffer.get()), &written,
                   reinterpret_cast<const Bytef*>(packed.data()), packed.size()) != Z_OK)
        return nullptr;
    size = written;
    return buffer;
}
} // namespace

CResourceArchive& CResourceArchive::instance() noexcept {
    static CResourceArchive archive;
    return archive;
}

bool CResourceArchive::open(const void* block, std::size_t length) {
    close();
    if (block == nullptr) return false;
    block_ = {static_cast<const std::byte*>(block), length};
    if (readDirectory()) return true;
    close();
    return false;
}

bool CResourceArchive::readDirectory() {
    if (block_.size() < kHeaderBytes || std::memcmp(block_.data(), kMagic.data(), kMagicRead) != 0)
        return false;
    const std::size_t directoryAt = Core::readU32(&block_[kDirectoryOffsetAt]);
    Bytes header;
    if (!slice(block_, directoryAt, kDirectoryHeaderBytes, header)) return false;
    const std::size_t dataAt = directoryAt + Core::readU32(&header[kDataOffsetAt]);
    const std::size_t directorySize = Core::readU32(&header[kDirectorySizeAt]);
    const std::size_t packedSize = Core::readU32(&header[kDirectoryPackedAt]);
    const std::size_t entries = Core::readU32(&header[kEntryCountAt]);

    Bytes packed;
    if (directorySize > kMaxEntries * kRecordBytes || dataAt > block_.size() ||
        !slice(block_, directoryAt + kDirectoryHeaderBytes, packedSize, packed))
        return false;

    std::size_t size = 0;
    const Buffer directory = inflated(packed, directorySize + kDirectorySlack, size);
    if (directory == nullptr || entries * kRecordBytes > size) return false;

    records_.resize(entries);
    for (std::size_t i = 0; i < entries; ++i) {
        const std::byte* const bytes = directory.get() + i * kRecordBytes;
        Record& record = records_[i];
        std::memcpy(record.name, bytes, kNameBytes);
        if (std::memchr(record.name, 0, kNameBytes) == nullptr) return false;
        record.unpackedSize = Core::readI32(bytes + kUnpackedSizeAt);
        record.packedSize = Core::readI32(bytes + kPackedSizeAt);
        record.offset = Core::readU32(bytes + kOffsetAt);
    }
    data_ = block_.subspan(dataAt);
    return true;
}

const CResourceArchive::Record* CResourceArchive::findRecord(const char* name) const noexcept {
    if (name == nullptr) return nullptr;
    const auto found = std::find_if(records_.begin(), records_.end(), [name](const Record& record) {
        return std::strcmp(record.name, name) == 0;
    });
    return found == records_.end() ? nullptr : &*found;
}

const std::byte* CResourceArchive::find(const char* name, std::size_t& size) {
    size = 0;
    const Record* const record = findRecord(name);
    if (record == nullptr) return nullptr;
    // A negative size becomes a huge one here, and is refused with the others.
    const auto unpackedSize = static_cast<std::size_t>(record->unpackedSize);
    const bool isPacked = record->packedSize > 0;
    const std::size_t length = isPacked ? static_cast<std::size_t>(record->packedSize) //
                                        : unpackedSize;
    Bytes source;
    if (unpackedSize > kMaxEntryBytes || !slice(data_, record->offset, length, source))
        return nullptr;

    Buffer buffer;
    std::size_t found = unpackedSize;
    if (isPacked) {
        buffer = inflated(source, unpackedSize + kEntrySlack, found);
        if (buffer == nullptr) return nullptr;
    } else {
        buffer.reset(new (std::nothrow) std::byte[unpackedSize + kEntrySlack]);
        if (buffer == nullptr) return nullptr;
        std::copy(source.begin(), source.end(), buffer.get());
        scramble({buffer.get(), unpackedSize});
    }
    handedOut_.push_back(std::move(buffer));
    size = found;
    return handedOut_.back().get();
}

void CResourceArchive::free(const void* buffer) noexcept {
    std::erase_if(handedOut_, [buffer](const Buffer& each) { return each.get() == buffer; });
}

const char* CResourceArchive::entryName(std::size_t index) const noexcept {
    return index < records_.size() ? records_[index].name : nullptr;
}

bool CResourceArchive::exists(const char* name) const noexcept {
    return findRecord(name) != nullptr;
}

void CResourceArchive::close() noexcept {
    handedOut_.clear();
    records_.clear();
    block_ = {};
    data_ = {};
}

} // namespace Sorel
