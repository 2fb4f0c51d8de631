// The data store and its chunk: round trips, the written bytes, and every kind of damage.
#include "core/DataStore.h"
#include "core/LittleEndian.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>
#include <vector>

using Core::CDataStore;
using testing::ElementsAre;

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

void append(Bytes& chunk, const std::string& text) {
    for (const char c : text)
        chunk.push_back(static_cast<std::byte>(c));
}

void appendNumber(Bytes& chunk, std::uint32_t number) {
    chunk.resize(chunk.size() + 4);
    Core::writeU32(&chunk[chunk.size() - 4], number);
}

// A chunk in clear, built by hand from the layout.
struct ClearChunk {
    Bytes bytes;
    ClearChunk() {
        append(bytes, "core");
        appendNumber(bytes, 8);
        appendNumber(bytes, 0);
        appendNumber(bytes, 0);
    }
    void item(int sectionLength,
              const std::string& section,
              int nameLength,
              const std::string& name,
              std::uint32_t size,
              const std::string& data) {
        append(bytes, "subc");
        bytes.push_back(static_cast<std::byte>(sectionLength));
        append(bytes, section);
        bytes.push_back(static_cast<std::byte>(nameLength));
        append(bytes, name);
        appendNumber(bytes, size);
        append(bytes, data);
    }
    void goodItem(const std::string& name, const std::string& data) {
        item(0, "", static_cast<int>(name.size()), name, static_cast<std::uint32_t>(data.size()),
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
    EXPECT_EQ(textOf(store, "a"), "first");
    EXPECT_FALSE(store.contains("b"));

    setText(store, "main", "a", "longer than before");
    EXPECT_EQ(store.getNumItems(), 2);
    EXPECT_EQ(textOf(store, "a"), "longer than before");
    EXPECT_EQ(store.find("main", "a", 5), nullptr) << "another size counts as absent";
    ASSERT_NE(store.find("other", "a", 6), nullptr);
    EXPECT_EQ(std::memcmp(store.find("other", "a", 6), "second", 6), 0);

    EXPECT_TRUE(store.setBlob("empty", nullptr, 0));
    EXPECT_TRUE(store.contains("empty"));
    EXPECT_NE(store.find("main", "empty", 0), nullptr);
    EXPECT_FALSE(store.setBlob("a", nullptr, 3));
    EXPECT_FALSE(store.setBlob("a", "x", -1));
    EXPECT_EQ(textOf(store, "a"), "longer than before");
}

TEST(DataStore, KeysAreJoinedTextsCutToTheirLimits) {
    CDataStore store;
    setText(store, "ab", "c", "1");
    setText(store, "a", "bc", "2");
    EXPECT_EQ(store.getNumItems(), 1);
    EXPECT_NE(store.find("", "abc", 1), nullptr);

    const std::string longName(100, 'n');
    const std::string longSection(100, 's');
    setText(store, longSection.c_str(), longName.c_str(), "cut");
    EXPECT_NE(store.find(longSection.substr(0, 64).c_str(), longName.substr(0, 66).c_str(), 3),
              nullptr);
    CDataStore copy;
    ASSERT_TRUE(parse(copy, chunkOf(store)));
    EXPECT_NE(copy.find(longSection.c_str(), longName.c_str(), 3), nullptr);
    setText(copy, nullptr, nullptr, "nameless");
    EXPECT_EQ(textOf(copy, ""), "nameless");
}

TEST(DataStore, DataOfAnItemMayBeSetAgain) {
    CDataStore store;
    setText(store, "", "a", "some text that lives on the heap");
    const void* data = nullptr;
    int size = 0;
    ASSERT_TRUE(store.getBlob("a", &data, &size));
    ASSERT_TRUE(store.setBlob("a", static_cast<const char*>(data) + 5, size - 5));
    EXPECT_EQ(textOf(store, "a"), "text that lives on the heap");
}

TEST(DataStore, ChunkHasTheStatedBytes) {
    CDataStore store;
    Bytes chunk = chunkOf(store);
    ASSERT_EQ(chunk.size(), 16U);
    EXPECT_NE(Core::readU32(&chunk[4]), 8U) << "scrambled";
    scramble(chunk);
    EXPECT_EQ(chunk, ClearChunk().bytes);

    setText(store, "se", "second", "data");
    setText(store, "", "x", "");
    chunk = chunkOf(store);
    scramble(chunk);
    ClearChunk expected;
    expected.item(2, "se", 6, "second", 4, "data");
    expected.goodItem("x", "");
    Core::writeU32(&expected.bytes[12], 10 + 2 + 6 + 4 + 10 + 1);
    EXPECT_EQ(chunk, expected.bytes);
}

TEST(DataStore, ScramblingBytesNeverChange) {
    // Chunks in users' projects depend on these; taken once from the generator's definition by an
    // independent calculation.
    const std::vector<std::byte> key = observedKey();
    EXPECT_THAT(std::vector(key.begin(), key.begin() + 4),
                ElementsAre(std::byte{0xA6}, std::byte{0x4D}, std::byte{0xA8}, std::byte{0xA7}));
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
    ASSERT_TRUE(store.parse(data, size));
    EXPECT_EQ(store.getNumItems(), 1);
}

TEST(DataStore, RandomStoresComeBackWhole) {
    const unsigned seed = 20240607;
    std::mt19937 random(seed);
    for (int round = 0; round < 50; ++round) {
        CDataStore store;
        std::vector<std::pair<std::string, std::string>> items;
        const auto count = random() % 20;
        for (std::size_t i = 0; i < count; ++i) {
            std::string data(random() % 6000, 0);
            for (char& c : data)
                c = static_cast<char>(random());
            items.emplace_back("item" + std::to_string(i), data);
            setText(store, "", items.back().first.c_str(), data);
        }
        CDataStore copy;
        setText(copy, "", "old", "gone after parse");
        ASSERT_TRUE(parse(copy, chunkOf(store)));
        ASSERT_EQ(copy.getNumItems(), store.getNumItems()) << "seed " << seed;
        for (const auto& [name, data] : items)
            ASSERT_EQ(textOf(copy, name.c_str()), data) << "seed " << seed;
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
    const auto refuses = [](const void* data, int size) {
        CDataStore store;
        setText(store, "", "old", "x");
        return !store.parse(data, size) && store.getNumItems() == 0;
    };
    EXPECT_TRUE(refuses(nullptr, 100));
    EXPECT_TRUE(refuses(good.data(), 0));
    EXPECT_TRUE(refuses(good.data(), -1));
    EXPECT_TRUE(refuses(good.data(), 15));
    for (const std::size_t at : {0U, 3U, 4U, 7U, 8U, 11U}) { // magic, 8, 0
        Bytes bad = good;
        bad[at] ^= std::byte{0x10};
        EXPECT_TRUE(refuses(bad.data(), static_cast<int>(bad.size()))) << "byte " << at;
    }
}

TEST(DataStore, HostileLengthsEndTheWalk) {
    struct Case {
        const char* what;
        int sectionLength;
        int nameLength;
        std::uint32_t size;
    };
    for (const Case& each :
         {Case{"negative section", -1, 1, 1}, Case{"most negative section", -128, 1, 1},
          Case{"section past the end", 127, 1, 1}, Case{"negative name", 0, -1, 1},
          Case{"name past the end", 0, 127, 1}, Case{"data past the end", 0, 1, 2},
          Case{"negative data", 0, 1, 0xFFFFFFFF}, Case{"sum that wraps", 0, 1, 0xFFFFFFF0},
          Case{"most negative data", 0, 1, 0x80000000}}) {
        ClearChunk clear;
        clear.goodItem("good", "data");
        clear.item(each.sectionLength, "", each.nameLength, "n", each.size, "d");
        CDataStore store;
        EXPECT_TRUE(parse(store, clear.scrambled()));
        EXPECT_EQ(store.getNumItems(), 1) << each.what;
        EXPECT_EQ(textOf(store, "good"), "data") << each.what;
    }
}

TEST(DataStore, TotalLengthBoundsTheWalk) {
    ClearChunk clear;
    clear.goodItem("a", "1");
    clear.goodItem("b", "2");
    Bytes chunk = clear.scrambled();
    const auto itemsWithTotal = [&](std::uint32_t total) {
        Bytes changed = chunk;
        scramble(changed);
        Core::writeU32(&changed[12], total);
        scramble(changed);
        CDataStore store;
        EXPECT_TRUE(parse(store, changed));
        return store.getNumItems();
    };
    EXPECT_EQ(itemsWithTotal(24), 2);
    EXPECT_EQ(itemsWithTotal(23), 1);
    EXPECT_EQ(itemsWithTotal(0), 0);
    EXPECT_EQ(itemsWithTotal(0x7FFFFFFF), 2);
    EXPECT_EQ(itemsWithTotal(0xFFFFFFFF), 0);

    append(clear.bytes, "subX and so on");
    CDataStore store;
    EXPECT_TRUE(parse(store, clear.scrambled()));
    EXPECT_EQ(store.getNumItems(), 2);
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

TEST(DataStore, DamagedChunksAreReadWithoutHarm) {
    // Smoke under the sanitizers: any byte may be anything.
    ClearChunk clear;
    clear.item(2, "se", 4, "name", 5, "12345");
    clear.goodItem("other", "678");
    const Bytes whole = clear.scrambled();
    CDataStore store;
    for (std::size_t at = 0; at < whole.size(); ++at)
        for (int value = 0; value < 256; ++value) {
            Bytes damaged = whole;
            damaged[at] = static_cast<std::byte>(value);
            parse(store, damaged);
            ASSERT_LE(store.getNumItems(), 2);
        }
}
