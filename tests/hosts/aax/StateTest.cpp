// The chunk of the plug-in's state, the number of changes, the field with the object's address.
#include "EffectFixture.h"

#include <climits>
#include <cstring>
#include <set>

namespace {

constexpr AAX_CTypeID kState = 0x5A4D5452; // "ZMTR"
constexpr AAX_CTypeID kSdk = AAX_CEffectParameters::kSdkChunk;

/// A chunk in memory that ends where the host's would.
class Chunk {
  public:
    explicit Chunk(std::size_t dataBytes)
        : bytes_(offsetof(AAX_SPlugInChunk, fData) + dataBytes, 0x55) {}
    AAX_SPlugInChunk* get() { return reinterpret_cast<AAX_SPlugInChunk*>(bytes_.data()); }
    AAX_SPlugInChunk* operator->() { return get(); }
    std::string data() const {
        return {bytes_.begin() + offsetof(AAX_SPlugInChunk, fData), bytes_.end()};
    }

  private:
    std::vector<char> bytes_;
};

class State : public EffectFixture {
  protected:
    State() { start(); }
    std::uint32_t stateSize() {
        std::uint32_t size = 12345;
        EXPECT_EQ(effect->GetChunkSize(kState, &size), AAX_SUCCESS);
        return size;
    }
};

TEST_F(State, IsOneMoreChunk) {
    std::int32_t count = 0;
    AAX_CTypeID id = 0;
    EXPECT_EQ(effect->GetNumberOfChunks(&count), AAX_SUCCESS);
    EXPECT_EQ(count, 2);
    EXPECT_EQ(effect->GetChunkIDFromIndex(0, &id), AAX_SUCCESS);
    EXPECT_EQ(id, kSdk);
    EXPECT_EQ(effect->GetChunkIDFromIndex(1, &id), AAX_SUCCESS);
    EXPECT_EQ(id, kState);
    for (const int index : {-1, 2})
        EXPECT_EQ(effect->GetChunkIDFromIndex(index, &id), -20006);
    std::uint32_t size = 0;
    EXPECT_EQ(effect->GetChunkSize(kSdk, &size), AAX_SUCCESS);
    EXPECT_EQ(size, 7U) << "the SDK's own is left to it";
    EXPECT_EQ(effect->GetChunkSize(0, &size), -20007);
}

TEST_F(State, GoesThereAndBack) {
    Chunk chunk(4);
    EXPECT_EQ(effect->GetChunk(kState, chunk.get()), -20008) << "nobody asked for its size";
    EXPECT_EQ(stateSize(), 4U);
    EXPECT_EQ(plugin().idles, 1) << "changes first, then the state that has them";
    // The plug-in's own memory moves on; the host gets what it was told.
    plugin().chunk = std::vector<char>(100, 'x');
    ASSERT_EQ(effect->GetChunk(kState, chunk.get()), AAX_SUCCESS);
    EXPECT_EQ(chunk->fSize, 4);
    EXPECT_EQ(chunk->fVersion, 1);
    EXPECT_EQ(chunk.data(), "stub");
    char name[32] = "VardoOSChunk";
    EXPECT_EQ(std::memcmp(chunk->fName, name, 32), 0);

    EXPECT_EQ(effect->SetChunk(kState, chunk.get()), AAX_SUCCESS);
    EXPECT_EQ(plugin().chunk, (std::vector<char>{'s', 't', 'u', 'b'}));
    plugin().chunk.clear();
    EXPECT_EQ(stateSize(), 0U);
    EXPECT_EQ(effect->GetChunk(kState, chunk.get()), -20008);
}

TEST_F(State, HostileSizesAndPointersAreRefused) {
    Chunk chunk(1);
    for (const int size : {0, -1, INT_MIN, INT_MAX, (16 << 20) + 1}) {
        chunk->fSize = size;
        EXPECT_EQ(effect->SetChunk(kState, chunk.get()), -20008) << size;
    }
    EXPECT_EQ(plugin().chunk.size(), 4U);
    EXPECT_EQ(effect->SetChunk(kState, nullptr), -20004);
    EXPECT_EQ(effect->GetChunk(kState, nullptr), -20004);
    EXPECT_EQ(effect->GetChunkSize(kState, nullptr), -20004);
    EXPECT_EQ(effect->GetChunkIDFromIndex(1, nullptr), -20004);
    EXPECT_EQ(effect->GetNumberOfChunks(nullptr), -20004);
    EXPECT_EQ(effect->GetNumberOfChanges(nullptr), -20004);
}

TEST_F(State, FailuresLeaveNothingToRead) {
    stateSize();
    plugin().duringIdle = [] { throw 1; };
    std::uint32_t size = 9;
    EXPECT_EQ(effect->GetChunkSize(kState, &size), AAX_ERROR_UNKNOWN_EXCEPTION);
    EXPECT_EQ(size, 0U);
    Chunk chunk(4);
    EXPECT_EQ(effect->GetChunk(kState, chunk.get()), -20008);
    module().createsNothing = true;
    start();
    EXPECT_EQ(effect->GetChunkSize(kState, &size), -20004);
    chunk->fSize = 4;
    EXPECT_EQ(effect->SetChunk(kState, chunk.get()), -20004);
}

TEST_F(State, AlwaysLooksChanged) {
    std::set<std::int32_t> seen;
    for (std::int32_t changes = -1; seen.size() < 100; seen.insert(changes)) {
        ASSERT_EQ(effect->GetNumberOfChanges(&changes), AAX_SUCCESS);
        ASSERT_FALSE(seen.contains(changes));
    }
    EXPECT_GE(*seen.begin(), 0);
}

TEST_F(State, AddressGoesIntoItsFieldOnly) {
    void* block[2] = {&block, &block};
    EXPECT_EQ(effect->ResetFieldData(8, block, sizeof(void*)), AAX_SUCCESS);
    EXPECT_EQ(block[0], effect.get());
    EXPECT_EQ(block[1], &block) << "not a byte more";
    block[0] = &block;
    EXPECT_EQ(effect->ResetFieldData(8, block, 4), AAX_SUCCESS);
    std::uint32_t half = 1;
    std::memcpy(&half, block, 4);
    EXPECT_EQ(half, 0U) << "half an address is none";
    EXPECT_EQ(effect->ResetFieldData(7, block, sizeof(void*)), AAX_SUCCESS);
    EXPECT_EQ(block[0], nullptr);
    EXPECT_EQ(effect->ResetFieldData(8, nullptr, 8), -20004);
}

} // namespace
