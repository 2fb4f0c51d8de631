// The data store and its chunk: round trips, the written bytes, and every kind of damage.
#include "core/DataStore.h"
#include "core/LittleEndian.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>
#include <vector>

using Core::CDataStore;

namespace {
using Bytes = std::vector<std::byte>;

Bytes chunkOf(CDataStore& store) {
    void* data = nullptr;
    int size = 0;
    store.serialise(&data, &size);
    const auto* first = static_cast<const std::byte*>(data);
    return {first, first + size};
}

void setText(CDataStore& store, const char* section, const char* name, const std::string& text) {
    ASSERT_TRUE(store.set(section, name, text.data(), static_cast<int>(text.size())));
}

std::string textOf(const CDataStore& store, const char* name) {
    const void* data = nullptr;
    int size = 0;
    if (!store.getBlob(name, &data, &size)) return "(none)";
    return {static_cast<const char*>(data), static_cast<std::size_t>(size)};
}

bool parse(CDataStore& store, const Bytes& chunk) {
    return store.parse(chunk.data(), static_cast<int>(chunk.size()));
}

// The scrambling bytes, as anybody can read them off a chunk: a long item of zeros shows them.
// Item data begins at 16 + 4 + 1 + 0 + 1 + 1 + 4 = 27, that is 23 bytes into the scrambled range.
std::vector<std::byte> observedKey() {
    constexpr std::size_t kKeySize = 3945;
    CDataStore store;
    const std::vector<char> zeros(kKeySize, 0);
    EXPECT_TRUE(store.setBlob("z", zeros.data(), static_cast<int>(zeros.size())));
    const Bytes chunk = chunkOf(store);
    std::vector<std::byte> key(kKeySize);
    for (std::size_t i = 0; i < kKeySize; ++i)
        key[(23 + i) % kKeySize] = chunk[27 + i];
    return key;
}

void scramble(Bytes& chunk) {
    static const std::vector<std::byte> key = observedKey();
    for (std::size_t i = 4; i < chunk.size(); ++i)
        chunk[i] ^= key[(i - 4) % key.size()];
}

// A chunk in clear, built by hand from the layout.
struct ClearChunk {
    Bytes bytes;
    ClearChunk() {
        append("core");
        for (const std::uint32_t field : {8U, 0U, 0U})
            appendNumber(field);
    }
    void append(const std::string& text) {
        for (const char c : text)
            bytes.push_back(static_cast<std::byte>(c));
    }
    void appendNumber(std::uint32_t number) {
        bytes.resize(bytes.size() + 4);
        Core::writeU32(&bytes[bytes.size() - 4], number);
    }
    void item(int sectionLength,
              int nameLength,
              std::uint32_t size,
              const std::string& section,
              const std::string& name,
              const std::string& data) {
        append("subc" + std::string(1, static_cast<char>(sectionLength)) + section +
               std::string(1, static_cast<char>(nameLength)) + name);
        appendNumber(size);
        append(data);
    }
    void goodItem(const std::string& name, const std::string& data) {
        item(0, static_cast<int>(name.size()), static_cast<std::uint32_t>(data.size()), "", name,
             data);
    }
    Bytes scrambled() {
        Core::writeU32(&bytes[12], static_cast<std::uint32_t>(bytes.size() - 16));
        Bytes result = bytes;
        scramble(result);
        return result;
    }
};
} // namespace

TEST(DataStore, KeepsReplacesAndFinds) {
    CDataStore store("main");
    setText(store, "main", "a", "first");
    setText(store, "other", "a", "second");
    setText(store, "main", "a", "longer than before");
    EXPECT_EQ(store.getNumItems(), 2);
    EXPECT_EQ(textOf(store, "a"), "longer than before");
    EXPECT_EQ(store.find("main", "a", 5), nullptr) << "another size counts as absent";
    ASSERT_NE(store.find("other", "a", 6), nullptr);
    EXPECT_FALSE(store.setBlob("a", nullptr, 3));
    EXPECT_FALSE(store.setBlob("a", "x", -1));
    const void* data = nullptr;
    int size = 0;
    ASSERT_TRUE(store.getBlob("a", &data, &size));
    ASSERT_TRUE(store.setBlob("a", static_cast<const char*>(data) + 7, size - 7));
    EXPECT_EQ(textOf(store, "a"), "than before") << "set from its own data";
}

TEST(DataStore, ChunkHasTheStatedBytes) {
    CDataStore store;
    setText(store, "se", "second", "data");
    setText(store, "", "x", "");
    Bytes chunk = chunkOf(store);
    EXPECT_NE(Core::readU32(&chunk[4]), 8U) << "scrambled";
    scramble(chunk);
    ClearChunk expected;
    expected.item(2, 6, 4, "se", "second", "data");
    expected.goodItem("x", "");
    Core::writeU32(&expected.bytes[12], 10 + 2 + 6 + 4 + 10 + 1);
    EXPECT_EQ(chunk, expected.bytes);
}

TEST(DataStore, ScramblingBytesNeverChange) {
    // Chunks in users' projects depend on these; taken once from the generator's definition by an
    // independent calculation.
    const std::vector<std::byte> key = observedKey();
    unsigned sum = 0; // Fletcher-like: notices order, too
    unsigned sums = 0;
    for (const std::byte byte : key) {
        sum = (sum + std::to_integer<unsigned>(byte)) % 65521;
        sums = (sums + sum) % 65521;
    }
    EXPECT_EQ(sum, 53196U);
    EXPECT_EQ(sums, 14087U);
}

TEST(DataStore, ChunkStaysReadableUntilTheNextOne) {
    CDataStore store;
    setText(store, "", "a", "kept");
    void* data = nullptr;
    int size = 0;
    store.serialise(&data, &size);
    store.clear();
    setText(store, "", "b", std::string(10000, 'b'));
    // A host hands back the very memory it was given.
    ASSERT_TRUE(store.parse(data, size));
    EXPECT_EQ(textOf(store, "a"), "kept");
    EXPECT_FALSE(store.contains("b"));
}

TEST(DataStore, RandomStoresComeBackWhole) {
    std::mt19937 random(20240607);
    for (int round = 0; round < 50; ++round) {
        CDataStore store;
        const int count = static_cast<int>(random() % 20);
        for (int i = 0; i < count; ++i) {
            std::string data(random() % 6000, 0);
            for (char& c : data)
                c = static_cast<char>(random());
            setText(store, "", ("item" + std::to_string(i)).c_str(), data);
            ASSERT_EQ(textOf(store, ("item" + std::to_string(i)).c_str()), data);
        }
        CDataStore copy;
        setText(copy, "", "old", "gone after parse");
        ASSERT_TRUE(parse(copy, chunkOf(store)));
        ASSERT_EQ(copy.getNumItems(), count);
        ASSERT_EQ(chunkOf(copy), chunkOf(store));
    }
}

TEST(DataStore, CutAnywhereGivesTheItemsBeforeTheCut) {
    ClearChunk clear;
    std::vector<std::size_t> ends;
    for (const char* name : {"one", "two", "three"}) {
        clear.goodItem(name, "data of " + std::string(name));
        ends.push_back(clear.bytes.size());
    }
    const Bytes whole = clear.scrambled();
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        // Exactly as large as it says, so that the address sanitizer sees a read behind the end.
        const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
        CDataStore store;
        setText(store, "", "old", "x");
        EXPECT_EQ(parse(store, cut), length >= 16);
        int expected = 0;
        for (const std::size_t end : ends)
            expected += length >= end ? 1 : 0;
        ASSERT_EQ(store.getNumItems(), expected) << "cut at " << length;
    }
}

TEST(DataStore, NoChunkGivesAnEmptyStore) {
    ClearChunk clear;
    clear.goodItem("a", "data");
    const Bytes good = clear.scrambled();
    CDataStore store;
    EXPECT_FALSE(store.parse(nullptr, 100));
    EXPECT_FALSE(store.parse(good.data(), -1));
    // Any byte may be anything; in the fields that tell a chunk, nothing is taken.
    for (std::size_t at = 0; at < good.size(); ++at)
        for (int flip = 1; flip < 256; ++flip) {
            Bytes bad = good;
            bad[at] ^= static_cast<std::byte>(flip);
            setText(store, "", "old", "x");
            ASSERT_EQ(parse(store, bad), at >= 12) << "byte " << at;
            ASSERT_LE(store.getNumItems(), at >= 12 ? 1 : 0) << "byte " << at;
        }
}

TEST(DataStore, HostileLengthsEndTheWalk) {
    struct Case {
        int sectionLength;
        int nameLength;
        std::uint32_t size;
    };
    for (const Case& each :
         {Case{-1, 1, 1}, Case{-128, 1, 1}, Case{127, 1, 1}, Case{0, -1, 1}, Case{0, 127, 1},
          Case{0, 1, 2}, Case{0, 1, 0xFFFFFFFF}, Case{0, 1, 0xFFFFFFF0}, Case{0, 1, 0x80000000}}) {
        SCOPED_TRACE(
            testing::PrintToString(std::tuple(each.sectionLength, each.nameLength, each.size)));
        ClearChunk clear;
        clear.goodItem("good", "data");
        clear.item(each.sectionLength, each.nameLength, each.size, "", "n", "d");
        CDataStore store;
        EXPECT_TRUE(parse(store, clear.scrambled()));
        EXPECT_EQ(store.getNumItems(), 1);
        EXPECT_EQ(textOf(store, "good"), "data");
    }
}

TEST(DataStore, TotalLengthBoundsTheWalk) {
    ClearChunk clear;
    clear.goodItem("a", "1");
    clear.goodItem("b", "2");
    using Case = std::pair<std::uint32_t, int>;
    for (const auto& [total, items] :
         {Case{24, 2}, Case{23, 1}, Case{0, 0}, Case{0x7FFFFFFF, 2}, Case{0xFFFFFFFF, 0}}) {
        Bytes chunk = clear.bytes;
        Core::writeU32(&chunk[12], total);
        scramble(chunk);
        CDataStore store;
        EXPECT_TRUE(parse(store, chunk));
        EXPECT_EQ(store.getNumItems(), items) << total;
    }
}

TEST(DataStore, FloodsOfItemsEnd) {
    ClearChunk same;
    ClearChunk different;
    for (int i = 0; i < 100000; ++i) {
        same.goodItem("a", "");
        different.goodItem(std::to_string(i), "");
    }
    CDataStore store;
    EXPECT_TRUE(parse(store, same.scrambled()));
    EXPECT_EQ(store.getNumItems(), 1);
    EXPECT_TRUE(parse(store, different.scrambled()));
    EXPECT_EQ(store.getNumItems(), static_cast<int>(CDataStore::kMaxItems));
    EXPECT_FALSE(store.setBlob("one more", "x", 1));
    EXPECT_TRUE(store.setBlob("0", "replaced", 8)) << "a full store still replaces";

    const std::vector<char> large(CDataStore::kMaxChunkBytes / 2);
    store.clear();
    EXPECT_TRUE(store.setBlob("a", large.data(), static_cast<int>(large.size())));
    EXPECT_FALSE(store.setBlob("b", large.data(), static_cast<int>(large.size())));
    EXPECT_TRUE(store.setBlob("a", large.data(), static_cast<int>(large.size())));
}
