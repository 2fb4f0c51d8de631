// Opening a page through the state chunk alone.
#include "frame/StateChunk.h"
#include "core/DataStore.h"
#include "core/LittleEndian.h"

#include <gtest/gtest.h>

#include <array>

namespace {
int pageIn(const Core::CDataStore& store) {
    const void* page = store.find("", Vardo::StateKeys::kActivePage, 4);
    return page == nullptr ? -1 : Core::readI32(static_cast<const std::byte*>(page));
}
} // namespace

TEST(StateChunk, OnlyThePageChanges) {
    Core::CDataStore store;
    ASSERT_TRUE(store.setBlob(Vardo::StateKeys::kParameters, "parameters", 10));
    ASSERT_TRUE(store.setBlob(Vardo::StateKeys::kActivePage, "\0\0\0\0", 4));
    void* chunk = nullptr;
    int size = 0;
    store.serialise(&chunk, &size);

    auto changed = Vardo::withActivePage(chunk, size, 2);
    ASSERT_EQ(changed.size(), static_cast<std::size_t>(size));
    ASSERT_TRUE(store.parse(changed.data(), size));
    EXPECT_EQ(pageIn(store), 2);
    EXPECT_NE(store.find("", Vardo::StateKeys::kParameters, 10), nullptr);

    store.clear();
    store.serialise(&chunk, &size);
    changed = Vardo::withActivePage(chunk, size, 3);
    ASSERT_TRUE(store.parse(changed.data(), static_cast<int>(changed.size())));
    EXPECT_EQ(pageIn(store), 3) << "added where there was none";
}

TEST(StateChunk, ForeignBytesGiveNothing) {
    const std::array<char, 40> text{"this is certainly no chunk of ours"};
    EXPECT_TRUE(Vardo::withActivePage(text.data(), 34, 1).empty());
    EXPECT_TRUE(Vardo::withActivePage(nullptr, 34, 1).empty());
    EXPECT_TRUE(Vardo::withActivePage(text.data(), -1, 1).empty());
}
