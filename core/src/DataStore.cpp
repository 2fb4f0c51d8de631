// Layout of a chunk, all numbers little-endian:
//   "core", 8, 0, length of all items;  then per item
//   "subc", section length (1 byte), section, name length (1 byte), name, data size, data.
// Everything behind the first four bytes is scrambled.
#include "core/DataStore.h"

#include "ScrambleKey.h"
#include "core/LittleEndian.h"

#include <algorithm>
#include <cstring>
#include <span>
#include <string_view>
#include <utility>

namespace Core {

namespace {
constexpr std::string_view kMagic = "core";
constexpr std::string_view kItemMagic = "subc";
constexpr std::uint32_t kVersion = 8;
constexpr std::size_t kHeaderBytes = 16;
constexpr std::size_t kItemOverhead = 10;
constexpr std::size_t kMaxSection = 64;
constexpr std::size_t kMaxName = 66;

std::string_view cut(const char* text, std::size_t limit) noexcept {
    return text == nullptr ? std::string_view() : std::string_view(text, strnlen(text, limit));
}

// Bernstein's hash with 33, characters taken as signed whatever the compiler's char is.
std::uint64_t hashOf(std::string_view section, std::string_view name) noexcept {
    std::uint64_t hash = 5381;
    for (const std::string_view part : {section, name})
        for (const char c : part)
            hash = hash * 33 + static_cast<std::uint64_t>(static_cast<signed char>(c));
    return hash;
}

void scramble(std::span<std::byte> bytes) noexcept {
    std::size_t i = 0;
    for (std::byte& byte : bytes) {
        byte ^= static_cast<std::byte>(kScrambleKey[i]);
        if (++i == kScrambleKey.size()) i = 0;
    }
}

// Walks over bytes of unknown origin; every step is checked against what is left.
class Reader {
  public:
    explicit Reader(std::span<const std::byte> bytes)
        : rest_(bytes) {}

    bool skip(std::string_view expected) noexcept {
        std::span<const std::byte> bytes;
        return take(expected.size(), bytes) &&
               std::memcmp(bytes.data(), expected.data(), expected.size()) == 0;
    }

    /// A text with a signed length byte in front.
    bool text(std::string& text) {
        std::span<const std::byte> bytes;
        if (!take(1, bytes)) return false;
        const auto length = static_cast<signed char>(bytes[0]);
        if (length < 0 || !take(static_cast<std::size_t>(length), bytes)) return false;
        text.assign(reinterpret_cast<const char*>(bytes.data()), bytes.size());
        return true;
    }

    /// Bytes with a 32-bit length in front.
    bool block(std::span<const std::byte>& block) noexcept {
        std::span<const std::byte> size;
        return take(4, size) && take(readU32(size.data()), block);
    }

  private:
    bool take(std::size_t count, std::span<const std::byte>& bytes) noexcept {
        if (count > rest_.size()) return false;
        bytes = rest_.first(count);
        rest_ = rest_.subspan(count);
        return true;
    }

    std::span<const std::byte> rest_;
};

class Writer {
  public:
    explicit Writer(std::byte* at)
        : at_(at) {}

    void bytes(const void* data, std::size_t size) noexcept {
        if (size > 0) std::memcpy(at_, data, size);
        at_ += size;
    }
    void text(std::string_view text) noexcept {
        *at_++ = static_cast<std::byte>(text.size());
        bytes(text.data(), text.size());
    }
    void number(std::size_t value) noexcept {
        writeU32(at_, static_cast<std::uint32_t>(value));
        at_ += 4;
    }

  private:
    std::byte* at_;
};
} // namespace

void CDataStore::clear() noexcept { items_.clear(); }

std::size_t CDataStore::serialisedBytes() const noexcept {
    std::size_t total = kHeaderBytes;
    for (const Item& item : items_)
        total += kItemOverhead + item.section.size() + item.name.size() + item.data.size();
    return total;
}

bool CDataStore::set(const char* section, const char* name, const void* data, int size) {
    if (size < 0 || (data == nullptr && size > 0)) return false;

    // Complete before anything of ours changes: all three may point into an item.
    const auto* bytes = static_cast<const std::byte*>(data);
    Item item{0, std::string(cut(section, kMaxSection)), std::string(cut(name, kMaxName)), {}};
    item.hash = hashOf(item.section, item.name);
    item.data.assign(bytes, bytes + size);

    const auto old = std::find_if(items_.begin(), items_.end(),
                                  [&](const Item& each) { return each.hash == item.hash; });
    const std::size_t needed =
        kItemOverhead + item.section.size() + item.name.size() + item.data.size();
    const std::size_t freed = old == items_.end() ? 0
                                                  : kItemOverhead + old->section.size() +
                                                        old->name.size() + old->data.size();
    if (serialisedBytes() - freed + needed > kMaxChunkBytes) return false;

    if (old != items_.end()) {
        *old = std::move(item);
        return true;
    }
    if (items_.size() >= kMaxItems) return false;
    items_.push_back(std::move(item));
    return true;
}

bool CDataStore::setBlob(const char* name, const void* data, int size) {
    return set(defaultSection_.c_str(), name, data, size);
}

const CDataStore::Item* CDataStore::findItem(const char* section, const char* name) const noexcept {
    const std::uint64_t hash = hashOf(cut(section, kMaxSection), cut(name, kMaxName));
    const auto found = std::find_if(items_.begin(), items_.end(),
                                    [hash](const Item& item) { return item.hash == hash; });
    return found == items_.end() ? nullptr : &*found;
}

const void* CDataStore::find(const char* section, const char* name, int size) const noexcept {
    static constexpr std::byte kNothing{}; // an empty item is there, too
    const Item* item = findItem(section, name);
    if (item == nullptr || size < 0 || item->data.size() != static_cast<std::size_t>(size))
        return nullptr;
    return size == 0 ? &kNothing : item->data.data();
}

bool CDataStore::contains(const char* name) const noexcept {
    return findItem(defaultSection_.c_str(), name) != nullptr;
}

bool CDataStore::getBlob(const char* name, const void** data, int* size) const noexcept {
    const Item* item = findItem(defaultSection_.c_str(), name);
    *size = item == nullptr ? 0 : static_cast<int>(item->data.size());
    *data = item == nullptr ? nullptr : find(defaultSection_.c_str(), name, *size);
    return item != nullptr;
}

void CDataStore::serialise(void** data, int* size) {
    const std::size_t total = serialisedBytes();
    chunk_.resize(total);

    Writer out(chunk_.data());
    out.bytes(kMagic.data(), kMagic.size());
    out.number(kVersion);
    out.number(0);
    out.number(total - kHeaderBytes);
    for (const Item& item : items_) {
        out.bytes(kItemMagic.data(), kItemMagic.size());
        out.text(item.section);
        out.text(item.name);
        out.number(item.data.size());
        out.bytes(item.data.data(), item.data.size());
    }
    scramble(std::span(chunk_).subspan(kMagic.size()));

    *data = chunk_.data();
    *size = static_cast<int>(total);
}

bool CDataStore::parse(const void* data, int size) {
    items_.clear();
    if (data == nullptr || size < static_cast<int>(kHeaderBytes) ||
        static_cast<std::size_t>(size) > kMaxChunkBytes)
        return false;

    const auto* bytes = static_cast<const std::byte*>(data);
    std::vector<std::byte> plain(bytes, bytes + size);
    scramble(std::span(plain).subspan(kMagic.size()));
    if (std::memcmp(plain.data(), kMagic.data(), kMagic.size()) != 0 ||
        readU32(&plain[4]) != kVersion || readU32(&plain[8]) != 0)
        return false;

    const auto promised = static_cast<std::size_t>(std::max(readI32(&plain[12]), 0));
    const std::span<const std::byte> items = std::span(plain).subspan(kHeaderBytes);
    Reader in(items.first(std::min(items.size(), promised)));

    // Counts items read, not kept: a flood of items of one key must end as well.
    for (std::size_t count = 0; count < kMaxItems; ++count) {
        std::string section;
        std::string name;
        std::span<const std::byte> block;
        if (!in.skip(kItemMagic) || !in.text(section) || !in.text(name) || !in.block(block)) break;
        set(section.c_str(), name.c_str(), block.data(), static_cast<int>(block.size()));
    }
    return true;
}

} // namespace Core
