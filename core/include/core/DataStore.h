// A small keyed store of byte blocks whose serialised form is what hosts keep in their projects.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace Core {

/// Items under a section and a name, in the order in which they were first set.
/// The key is section and name joined without a separator: ("ab", "c") and ("a", "bc") are one
/// key. Sections are cut to 64 characters and names to 66; null counts as empty.
/// Threads: one at a time.
/// Fails: std::bad_alloc, else nothing: absent, damaged and oversized all read as "not there".
class CDataStore {
  public:
    /// A chunk, its header included, is never larger; nor has a store more items than this.
    static constexpr std::size_t kMaxChunkBytes = std::size_t{64} << 20;
    static constexpr std::size_t kMaxItems = 4096;

    /// `defaultSection` is where setBlob, contains and getBlob work.
    explicit CDataStore(const char* defaultSection = "")
        : defaultSection_(defaultSection) {}

    /// Takes all items out. The chunk that `serialise` gave last stays readable.
    void clear() noexcept;

    /// Keeps a copy of `size` bytes; an item of the same key is replaced and keeps its place.
    /// `data` may belong to an item of this store.
    /// False when nothing was kept: null data, a negative size, or a limit above passed.
    bool set(const char* section, const char* name, const void* data, int size);
    bool setBlob(const char* name, const void* data, int size);

    /// The item's data, if the item is there and has exactly `size` bytes, else null. Not aligned.
    /// Valid until the store changes.
    const void* find(const char* section, const char* name, int size) const noexcept;
    bool contains(const char* name) const noexcept;
    /// The item's data whatever its size, with the validity of `find`. False leaves null and 0.
    bool getBlob(const char* name, const void** data, int* size) const noexcept;

    int getNumItems() const noexcept { return static_cast<int>(items_.size()); }

    /// Writes all items into one chunk. The memory belongs to the store and stays as it is until
    /// the next `serialise` on this store or its end, whatever else is done with the store.
    void serialise(void** data, int* size);

    /// Replaces all items by those of a chunk, which may be the very one that `serialise` gave.
    /// False, and an empty store, when it is no chunk at all; a chunk that is damaged further on
    /// gives the items in front of the damage.
    bool parse(const void* data, int size);

  private:
    struct Item {
        std::uint64_t hash;
        std::string section;
        std::string name;
        std::vector<std::byte> data;
    };

    const Item* findItem(const char* section, const char* name) const noexcept;
    std::size_t serialisedBytes() const noexcept;

    std::vector<Item> items_;
    std::string defaultSection_;
    std::vector<std::byte> chunk_; // what serialise gave last
};

} // namespace Core
