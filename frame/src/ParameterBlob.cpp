#include "ParameterBlob.h"

#include "core/LittleEndian.h"
#include "frame/PropertyManager.h"

#include <zlib.h>

#include <cmath>
#include <cstring>

namespace Vardo {

namespace {
using Bytes = std::vector<std::byte>;
using Core::readF32;
using Core::readU32;
using Core::writeF32;
using Core::writeU32;

constexpr std::size_t kHeaderBytes = 48;
constexpr std::uint32_t kFormatVersion = 0x1000;
constexpr std::size_t kRecordBytes = 64;
constexpr std::size_t kKeyBytes = 52;
constexpr int kCompressionLevel = 9;

// Offsets in the header, behind the name.
constexpr std::size_t kAtHeaderSize = 20;
constexpr std::size_t kAtVersion = 24;
constexpr std::size_t kAtCompressed = 28;
constexpr std::size_t kAtBodySize = 32;
constexpr std::size_t kAtPlainBodySize = 36;
constexpr std::size_t kAtRecordSize = 40;
constexpr std::size_t kAtCount = 44;

struct Header {
    bool compressed;
    std::size_t headerSize;
    std::size_t bodySize;
    std::size_t plainBodySize;
    std::size_t recordSize;
    std::size_t count;
};

// Only a header whose figures agree with each other and with the data that is there.
std::optional<Header> readHeader(std::span<const std::byte> data) {
    if (data.size() < kHeaderBytes) return std::nullopt;
    const auto field = [data](std::size_t at) { return std::size_t{readU32(&data[at])}; };
    const Header header{field(kAtCompressed) != 0, field(kAtHeaderSize), field(kAtBodySize),
                        field(kAtPlainBodySize),   field(kAtRecordSize), field(kAtCount)};

    const bool valid = field(kAtVersion) == kFormatVersion && header.headerSize >= kHeaderBytes &&
                       header.headerSize <= data.size() &&
                       header.bodySize <= data.size() - header.headerSize &&
                       header.plainBodySize <= CPropertyManager::kMaxBodyBytes &&
                       header.recordSize >= kRecordBytes &&
                       header.count <= header.plainBodySize / header.recordSize &&
                       (header.compressed || header.bodySize >= header.plainBodySize);
    return valid ? std::optional(header) : std::nullopt;
}

Bytes compressBody(std::span<const std::byte> body) {
    uLongf size = compressBound(body.size());
    Bytes packed(size);
    const int result =
        compress2(reinterpret_cast<Bytef*>(packed.data()), &size,
                  reinterpret_cast<const Bytef*>(body.data()), body.size(), kCompressionLevel);
    packed.resize(result == Z_OK ? size : 0);
    return packed;
}

// Exactly `size` bytes, or nothing.
std::optional<Bytes> inflateBody(std::span<const std::byte> packed, std::size_t size) {
    Bytes body(size + 1); // one more, so that a body that goes on is noticed
    uLongf produced = body.size();
    const int result = uncompress(reinterpret_cast<Bytef*>(body.data()), &produced,
                                  reinterpret_cast<const Bytef*>(packed.data()), packed.size());
    if (result != Z_OK || produced != size) return std::nullopt;
    body.resize(size);
    return body;
}

std::vector<ParameterRecord> readRecords(const Header& header, std::span<const std::byte> body) {
    std::vector<ParameterRecord> records;
    for (std::size_t i = 0; i < header.count; ++i) {
        const std::byte* bytes = &body[i * header.recordSize];
        const auto* key = reinterpret_cast<const char*>(bytes);
        const std::size_t length = strnlen(key, kKeyBytes);
        const float value = readF32(bytes + kKeyBytes);
        if (length == kKeyBytes || !std::isfinite(value)) continue;
        records.push_back({std::string(key, length), value, readF32(bytes + kKeyBytes + 4),
                           readF32(bytes + kKeyBytes + 8)});
    }
    return records;
}
} // namespace

std::string_view storedKey(const char* key) { return {key, strnlen(key, kKeyBytes - 1)}; }

Bytes writeParameterBlob(std::string_view name,
                         std::span<const ParameterRecord> records,
                         bool compressed) {
    Bytes body(records.size() * kRecordBytes);
    std::byte* at = body.data();
    for (const ParameterRecord& record : records) {
        const std::string_view key = storedKey(record.key.c_str());
        std::memcpy(at, key.data(), key.size());
        writeF32(at + kKeyBytes, record.value);
        writeF32(at + kKeyBytes + 4, record.min);
        writeF32(at + kKeyBytes + 8, record.max);
        at += kRecordBytes;
    }
    const std::size_t plainBodySize = body.size();
    if (plainBodySize > CPropertyManager::kMaxBodyBytes) return {};
    if (compressed) {
        body = compressBody(body);
        if (body.empty()) return {}; // a stream is never empty, not even one of nothing
    }

    Bytes blob(kHeaderBytes);
    const auto field = [&blob](std::size_t offset, std::size_t value) {
        writeU32(&blob[offset], static_cast<std::uint32_t>(value));
    };
    std::memcpy(blob.data(), name.data(), std::min(name.size(), CPropertyManager::kMaxBlobName));
    field(kAtHeaderSize, kHeaderBytes);
    field(kAtVersion, kFormatVersion);
    field(kAtCompressed, compressed ? 1 : 0);
    field(kAtBodySize, body.size());
    field(kAtPlainBodySize, plainBodySize);
    field(kAtRecordSize, kRecordBytes);
    field(kAtCount, records.size());
    blob.insert(blob.end(), body.begin(), body.end());
    return blob;
}

std::optional<std::vector<ParameterRecord>> readParameterBlob(std::string_view name,
                                                              std::span<const std::byte> data) {
    // The name may also occur by chance in what stands in front, hence the look at the header.
    for (; data.size() >= kHeaderBytes; data = data.subspan(1)) {
        if (!name.empty() && std::memcmp(data.data(), name.data(), name.size()) != 0) continue;
        const std::optional<Header> header = readHeader(data);
        if (!header) continue;

        const auto stored = data.subspan(header->headerSize, header->bodySize);
        if (!header->compressed) return readRecords(*header, stored);
        const std::optional<Bytes> body = inflateBody(stored, header->plainBodySize);
        if (!body) return std::nullopt;
        return readRecords(*header, *body);
    }
    return std::nullopt;
}

} // namespace Vardo
