// The chunk of the plug-in's state, and the field by which the render function finds this object.
#include "Vardo_AAX_Wrapper.h"

#include "Guard.h"

#include <algorithm>
#include <cstring>

using namespace Vardo;
using namespace Vardo::Aax;

namespace {
constexpr int32_t kStateVersion = 1;
constexpr char kStateName[] = "VardoOSChunk";

// What stands in every host's sessions.
static_assert(sizeof(AAX_CTypeID) == 4);
static_assert(offsetof(AAX_SPlugInChunk, fVersion) == 4);
static_assert(offsetof(AAX_SPlugInChunk, fManufacturerID) == 8);
static_assert(offsetof(AAX_SPlugInChunk, fChunkID) == 20);
static_assert(offsetof(AAX_SPlugInChunk, fName) == 24);
static_assert(offsetof(AAX_SPlugInChunk, fData) == 56);
static_assert(sizeof(AAX_SPlugInChunk::fName) == 32);
} // namespace

AAX_Result
Vardo_AAX_Wrapper::ResetFieldData(AAX_CFieldIndex field, void* data, uint32_t size) const {
    if (data == nullptr) return AAX_ERROR_NULL_OBJECT;
    return guarded([&]() -> AAX_Result {
        const void* self = this;
        if (field != kWrapperField || size < sizeof self)
            return AAX_CEffectParameters::ResetFieldData(field, data, size);
        std::memset(data, 0, size);
        std::memcpy(data, &self, sizeof self);
        return AAX_SUCCESS;
    });
}

AAX_Result Vardo_AAX_Wrapper::GetNumberOfChunks(int32_t* count) const {
    if (count == nullptr) return AAX_ERROR_NULL_OBJECT;
    return guarded([&] {
        const AAX_Result result = AAX_CEffectParameters::GetNumberOfChunks(count);
        if (result == AAX_SUCCESS) ++*count;
        return result;
    });
}

AAX_Result Vardo_AAX_Wrapper::GetChunkIDFromIndex(int32_t index, AAX_CTypeID* id) const {
    if (id == nullptr) return AAX_ERROR_NULL_OBJECT;
    return guarded([&]() -> AAX_Result {
        int32_t sdkChunks = 0;
        const AAX_Result result = AAX_CEffectParameters::GetNumberOfChunks(&sdkChunks);
        if (result != AAX_SUCCESS) return result;
        if (index != sdkChunks) return AAX_CEffectParameters::GetChunkIDFromIndex(index, id);
        *id = kStateChunk;
        return AAX_SUCCESS;
    });
}

AAX_Result Vardo_AAX_Wrapper::GetChunkSize(AAX_CTypeID id, uint32_t* size) const {
    if (size == nullptr) return AAX_ERROR_NULL_OBJECT;
    return guarded([&] {
        return id == kStateChunk ? stateSize(*size) : AAX_CEffectParameters::GetChunkSize(id, size);
    });
}

AAX_Result Vardo_AAX_Wrapper::GetChunk(AAX_CTypeID id, AAX_SPlugInChunk* chunk) const {
    if (chunk == nullptr) return AAX_ERROR_NULL_OBJECT;
    return guarded([&] {
        return id == kStateChunk ? copyState(*chunk) : AAX_CEffectParameters::GetChunk(id, chunk);
    });
}

AAX_Result Vardo_AAX_Wrapper::SetChunk(AAX_CTypeID id, const AAX_SPlugInChunk* chunk) {
    if (chunk == nullptr) return AAX_ERROR_NULL_OBJECT;
    return guarded([&] {
        return id == kStateChunk ? setState(*chunk) : AAX_CEffectParameters::SetChunk(id, chunk);
    });
}

// A copy: the plug-in's own memory moves when anybody else asks it for its state, and what GetChunk
// writes must be as long as the host was told here.
AAX_Result Vardo_AAX_Wrapper::stateSize(uint32_t& size) const {
    size = 0;
    state_.clear();
    if (plugin_ == nullptr) return AAX_ERROR_NULL_OBJECT;
    delivery_.deliver(plugin_.get());
    void* data = nullptr;
    const int bytes = plugin_->getChunk(&data);
    if (data != nullptr && bytes > 0) {
        const auto* first = static_cast<const std::byte*>(data);
        state_.assign(first, first + bytes);
    }
    size = static_cast<uint32_t>(state_.size());
    return AAX_SUCCESS;
}

AAX_Result Vardo_AAX_Wrapper::copyState(AAX_SPlugInChunk& chunk) const {
    if (state_.empty()) return AAX_ERROR_INCORRECT_CHUNK_SIZE;
    chunk.fSize = static_cast<int32_t>(state_.size());
    chunk.fVersion = kStateVersion;
    std::memset(chunk.fName, 0, sizeof chunk.fName);
    std::memcpy(chunk.fName, kStateName, sizeof kStateName);
    // The declared array of one byte stands for as many as the host was told.
    auto* data = reinterpret_cast<std::byte*>(&chunk) + offsetof(AAX_SPlugInChunk, fData);
    std::copy(state_.begin(), state_.end(), data);
    return AAX_SUCCESS;
}

AAX_Result Vardo_AAX_Wrapper::setState(const AAX_SPlugInChunk& chunk) {
    if (plugin_ == nullptr) return AAX_ERROR_NULL_OBJECT;
    if (chunk.fSize <= 0 || chunk.fSize > kLargestState) return AAX_ERROR_INCORRECT_CHUNK_SIZE;
    plugin_->setChunk(chunk.fData, chunk.fSize);
    delivery_.deliver(plugin_.get());
    return AAX_SUCCESS;
}
