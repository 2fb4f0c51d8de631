// The chunk of the plug-in's state, the number of changes, the field with the object's address.
#include "EffectFixture.h"

#include <climits>
#include <cstring>
#include <set>

namespace {

constexpr AAX_CTypeID kState = 0x5A4D5452; // "ZMTR"
constexpr AAX_CTypeID kSdk = AAX_CEffectParameters::kSdkChunk;

class State : public EffectFixture {
  protected:
    State() { start(); }
    std::uint32_t stateSize() {
        std::uint32_t size = 12345;
        EXPECT_EQ(effect->GetChunkSize(kState, &size), AAX_SUCCESS);
        return size;
    }

    /// A chunk of four bytes, in memory that ends where the host's would.
    std::vector<char> memory = std::vector<char>(offsetof(AAX_SPlugInChunk, fData) + 4, 0x55);
    AAX_SPlugInChunk* chunk = reinterpret_cast<AAX_SPlugInChunk*>(memory.data());
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
        EXPECT_EQ(effect->GetChunkIDFromIndex(index, &id), AAX_ERROR_INVALID_CHUNK_INDEX);
    std::uint32_t size = 0;
    EXPECT_EQ(effect->GetChunkSize(kSdk, &size), AAX_SUCCESS);
    EXPECT_EQ(size, 7U) << "the SDK's own is left to it";
}

TEST_F(State, GoesThereAndBack) {
    EXPECT_EQ(effect->GetChunk(kState, chunk), AAX_ERROR_INCORRECT_CHUNK_SIZE)
        << "nobody asked for its size";
    EXPECT_EQ(stateSize(), 4U);
    EXPECT_EQ(plugin().idles, 1) << "changes first, then the state that has them";
    // The plug-in's own memory moves on; the host gets what it was told.
    plugin().chunk = std::vector<char>(100, 'x');
    ASSERT_EQ(effect->GetChunk(kState, chunk), AAX_SUCCESS);
    EXPECT_EQ(chunk->fSize, 4);
    EXPECT_EQ(chunk->fVersion, 1);
    EXPECT_EQ(std::string(memory.end() - 4, memory.end()), "stub");
    const char name[32] = "VardoOSChunk";
    EXPECT_EQ(std::memcmp(chunk->fName, name, 32), 0);

    EXPECT_EQ(effect->SetChunk(kState, chunk), AAX_SUCCESS);
    EXPECT_EQ(plugin().chunk, (std::vector<char>{'s', 't', 'u', 'b'}));
    plugin().chunk.clear();
    EXPECT_EQ(stateSize(), 0U);
    EXPECT_EQ(effect->GetChunk(kState, chunk), AAX_ERROR_INCORRECT_CHUNK_SIZE);
}

TEST_F(State, HostileSizesAndPointersAreRefused) {
    for (const int size : {0, -1, INT_MIN, INT_MAX, (16 << 20) + 1}) {
        chunk->fSize = size;
        EXPECT_EQ(effect->SetChunk(kState, chunk), AAX_ERROR_INCORRECT_CHUNK_SIZE) << size;
    }
    EXPECT_EQ(plugin().chunk.size(), 4U);
    for (const AAX_Result result :
         {effect->SetChunk(kState, nullptr), effect->GetChunk(kState, nullptr),
          effect->GetChunkSize(kState, nullptr), effect->GetChunkIDFromIndex(1, nullptr),
          effect->GetNumberOfChunks(nullptr), effect->GetNumberOfChanges(nullptr)})
        EXPECT_EQ(result, AAX_ERROR_NULL_OBJECT);
}

TEST_F(State, FailuresLeaveNothingToRead) {
    stateSize();
    plugin().duringIdle = [] { throw 1; };
    std::uint32_t size = 9;
    EXPECT_EQ(effect->GetChunkSize(kState, &size), AAX_ERROR_UNKNOWN_EXCEPTION);
    EXPECT_EQ(size, 0U);
    EXPECT_EQ(effect->GetChunk(kState, chunk), AAX_ERROR_INCORRECT_CHUNK_SIZE);
    module().createsNothing = true;
    start();
    EXPECT_EQ(effect->GetChunkSize(kState, &size), AAX_ERROR_NULL_OBJECT);
    chunk->fSize = 4;
    EXPECT_EQ(effect->SetChunk(kState, chunk), AAX_ERROR_NULL_OBJECT);
}

TEST_F(State, AlwaysLooksChanged) {
    std::set<std::int32_t> seen;
    for (int i = 0; i < 100; ++i) {
        std::int32_t changes = -1;
        ASSERT_EQ(effect->GetNumberOfChanges(&changes), AAX_SUCCESS);
        EXPECT_GE(changes, 0);
        EXPECT_TRUE(seen.insert(changes).second);
    }
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
    EXPECT_EQ(effect->ResetFieldData(8, nullptr, 8), AAX_ERROR_NULL_OBJECT);
}

} // namespace
