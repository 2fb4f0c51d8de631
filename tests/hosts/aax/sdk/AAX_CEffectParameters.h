// Test double: the SDK's half of an effect, with a host that a test can be.
#pragma once

#include "AAX_CParameter.h"
#include "AAX_Errors.h"
#include "AAX_IController.h"
#include "AAX_ITransport.h"

#include <cstring>
#include <memory>
#include <stdexcept>
#include <vector>

inline AAX_CParamID cDefaultMasterBypassID = "MasterBypassID";

class AAX_CEffectParameters;

class AAX_CParameterManager {
  public:
    void AddParameter(AAX_IParameter* added) { list.emplace_back(added); }
    AAX_IParameter* GetParameterByID(AAX_CParamID id) const {
        for (const auto& parameter : list)
            if (parameter->id == id) return parameter.get();
        return nullptr;
    }

    std::vector<std::unique_ptr<AAX_IParameter>> list;
};

class AAX_CPacketDispatcher {
  public:
    void Initialize(AAX_IController*, AAX_CEffectParameters* effect) { initializedFor = effect; }

    AAX_CEffectParameters* initializedFor = nullptr;
};

class AAX_IEffectParameters {
  public:
    virtual ~AAX_IEffectParameters() = default;
};

class AAX_CEffectParameters : public AAX_IEffectParameters {
  public:
    static constexpr AAX_CTypeID kSdkChunk = 0x656C636B;

    AAX_Result Initialize() { return EffectInit(); }
    virtual AAX_Result EffectInit() { return AAX_SUCCESS; }

    AAX_IController* Controller() { return controller; }
    AAX_ITransport* Transport() { return transport; }

    virtual AAX_Result ResetFieldData(AAX_CFieldIndex, void* data, std::uint32_t size) const {
        std::memset(data, 0, size);
        return AAX_SUCCESS;
    }
    virtual AAX_Result GetMasterBypassParameter(AAX_IString* id) const {
        id->Set(mParameterManager.GetParameterByID(cDefaultMasterBypassID) != nullptr
                    ? cDefaultMasterBypassID
                    : "");
        return AAX_SUCCESS;
    }
    virtual AAX_Result
    UpdateParameterNormalizedValue(AAX_CParamID id, double value, AAX_EUpdateSource) {
        if (sdkThrows) throw std::runtime_error("SDK");
        AAX_IParameter* parameter = mParameterManager.GetParameterByID(id);
        if (parameter == nullptr) return AAX_ERROR_INVALID_PARAMETER_ID;
        parameter->normalized = value;
        return AAX_SUCCESS;
    }
    AAX_Result SetParameterNormalizedValue(AAX_CParamID id, double value) {
        return with(id, [&](AAX_IParameter& parameter) { parameter.SetNormalizedValue(value); });
    }
    AAX_Result TouchParameter(AAX_CParamID id) {
        return with(id, [](AAX_IParameter& parameter) { ++parameter.touches; });
    }
    AAX_Result ReleaseParameter(AAX_CParamID id) {
        return with(id, [](AAX_IParameter& parameter) { ++parameter.releases; });
    }

    virtual AAX_Result GetNumberOfChunks(std::int32_t* count) const {
        *count = 1;
        return AAX_SUCCESS;
    }
    virtual AAX_Result GetChunkIDFromIndex(std::int32_t index, AAX_CTypeID* id) const {
        *id = index == 0 ? kSdkChunk : 0;
        return index == 0 ? AAX_SUCCESS : AAX_ERROR_INVALID_CHUNK_INDEX;
    }
    virtual AAX_Result GetChunkSize(AAX_CTypeID id, std::uint32_t* size) const {
        *size = id == kSdkChunk ? 7 : 0;
        return sdkResult(id);
    }
    virtual AAX_Result GetChunk(AAX_CTypeID id, AAX_SPlugInChunk*) const { return sdkResult(id); }
    virtual AAX_Result SetChunk(AAX_CTypeID id, const AAX_SPlugInChunk*) { return sdkResult(id); }
    virtual AAX_Result GetNumberOfChanges(std::int32_t* count) const {
        *count = 0;
        return AAX_SUCCESS;
    }

    // --- the host's side ---
    AAX_IController* controller = nullptr;
    AAX_ITransport* transport = nullptr;
    bool sdkThrows = false;
    AAX_CParameterManager mParameterManager;
    AAX_CPacketDispatcher mPacketDispatcher;

  private:
    template <typename Operation>
    AAX_Result with(AAX_CParamID id, Operation operation) {
        AAX_IParameter* parameter = mParameterManager.GetParameterByID(id);
        if (parameter == nullptr) return AAX_ERROR_INVALID_PARAMETER_ID;
        operation(*parameter);
        return AAX_SUCCESS;
    }
    static AAX_Result sdkResult(AAX_CTypeID id) {
        return id == kSdkChunk ? AAX_SUCCESS : AAX_ERROR_INVALID_CHUNK_ID;
    }
};
