// Test doubles: the SDK's half of an effect and of its editor, in a host that a test can be.
#pragma once

#include "Types.h"

#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>
#include <stdexcept>
#include <vector>

inline AAX_CParamID cDefaultMasterBypassID = "MasterBypassID";

// --- the host -----------------------------------------------------------------------------------

class AAX_IController {
  public:
    AAX_Result GetSampleRate(AAX_CSampleRate* rate) const {
        *rate = sampleRate;
        return AAX_SUCCESS;
    }
    AAX_Result SetSignalLatency(std::int32_t samples) {
        latency = samples;
        return AAX_SUCCESS;
    }
    AAX_Result GetHostName(AAX_IString* name) const {
        name->Set(hostName.c_str());
        return AAX_SUCCESS;
    }

    float sampleRate = 48000;
    int latency = -1;
    std::string hostName;
};

class AAX_ITransport {
  public:
    AAX_Result GetCurrentTempo(double* value) const {
        *value = tempo;
        return result;
    }
    AAX_Result IsTransportPlaying(bool* value) const {
        *value = playing;
        return result;
    }
    AAX_Result GetCurrentNativeSampleLocation(std::int64_t* value) const {
        *value = location;
        return result;
    }

    double tempo = 120;
    bool playing = true;
    std::int64_t location = 0;
    AAX_Result result = AAX_SUCCESS;
};

class AAX_IMIDINode {
  public:
    AAX_CMidiStream* GetNodeBuffer() { return stream; }
    AAX_ITransport* GetTransport() { return transport; }

    AAX_CMidiStream* stream = nullptr;
    AAX_ITransport* transport = nullptr;
};

// --- parameters ---------------------------------------------------------------------------------

/// As in the SDK a new value is a request to the host, and stands when the host has answered.
class AAX_IParameter {
  public:
    virtual ~AAX_IParameter() = default;
    void SetNormalizedValue(double value) {
        if (request)
            request(value);
        else
            normalized = value;
    }

    std::string id;
    std::string title;
    double defaultValue = 0;
    double normalized = 0;
    int touches = 0;
    int releases = 0;
    std::function<void(double)> request;
};

// All of ours run from 0 to 1.
template <typename T>
struct AAX_CLinearTaperDelegate {
    AAX_CLinearTaperDelegate(T, T) {}
};
template <typename T>
struct AAX_CNumberDisplayDelegate {};
template <typename T>
struct AAX_CBinaryTaperDelegate {};
template <typename T>
struct AAX_CBinaryDisplayDelegate {
    AAX_CBinaryDisplayDelegate(const char*, const char*) {}
};

template <typename T>
class AAX_CParameter final : public AAX_IParameter {
  public:
    template <typename Taper, typename Display>
    AAX_CParameter(
        AAX_CParamID idText, const AAX_CString& name, T value, const Taper&, const Display&, bool) {
        id = std::string(idText).substr(0, 31);
        title = name.Get();
        defaultValue = normalized = static_cast<double>(value);
    }
};

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

// --- the effect ---------------------------------------------------------------------------------

struct AAX_CPacketDispatcher {
    void Initialize(AAX_IController*, void* effect) { initializedFor = effect; }
    void* initializedFor = nullptr;
};

class AAX_IEffectParameters {
  public:
    virtual ~AAX_IEffectParameters() = default;
};

class AAX_CEffectParameters : public AAX_IEffectParameters {
  public:
    static constexpr AAX_CTypeID kSdkChunk = 0x656C636B;

    AAX_Result Initialize() { return EffectInit(); }
    virtual AAX_Result EffectInit() = 0;
    AAX_IController* Controller() { return controller; }
    AAX_ITransport* Transport() { return transport; }

    virtual AAX_Result ResetFieldData(AAX_CFieldIndex, void* data, std::uint32_t size) const {
        std::memset(data, 0, size);
        return AAX_SUCCESS;
    }
    virtual AAX_Result GetMasterBypassParameter(AAX_IString* id) const {
        id->Set(cDefaultMasterBypassID);
        return AAX_SUCCESS;
    }
    virtual AAX_Result
    UpdateParameterNormalizedValue(AAX_CParamID id, double value, AAX_EUpdateSource) {
        if (sdkThrows) throw std::runtime_error("SDK");
        return with(id, [value](AAX_IParameter& parameter) { parameter.normalized = value; });
    }
    AAX_Result SetParameterNormalizedValue(AAX_CParamID id, double value) {
        return with(id, [value](AAX_IParameter& p) { p.SetNormalizedValue(value); });
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
        *id = kSdkChunk;
        return index == 0 ? AAX_SUCCESS : AAX_ERROR_INVALID_CHUNK_INDEX;
    }
    virtual AAX_Result GetChunkSize(AAX_CTypeID id, std::uint32_t* size) const {
        *size = 7;
        return ofOwn(id);
    }
    virtual AAX_Result GetChunk(AAX_CTypeID id, AAX_SPlugInChunk*) const { return ofOwn(id); }
    virtual AAX_Result SetChunk(AAX_CTypeID id, const AAX_SPlugInChunk*) { return ofOwn(id); }
    virtual AAX_Result GetNumberOfChanges(std::int32_t*) const { return AAX_SUCCESS; }

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
    static AAX_Result ofOwn(AAX_CTypeID id) {
        return id == kSdkChunk ? AAX_SUCCESS : AAX_ERROR_INVALID_CHUNK_ID;
    }
};

// --- the editor ---------------------------------------------------------------------------------

class IACFUnknown {};
class AAX_IViewContainer : public IACFUnknown {
  public:
    AAX_Result SetViewSize(AAX_Point& size) {
        sizes.push_back(size);
        return AAX_SUCCESS;
    }

    void* window = nullptr;
    std::vector<AAX_Point> sizes;
};

class AAX_CEffectGUI {
  public:
    // The SDK's own calls DeleteViewContainer here, which is gone by now with the derived class.
    virtual ~AAX_CEffectGUI() {
        if (container_ != nullptr) std::abort();
    }

    AAX_Result Initialize(AAX_IEffectParameters* parameters) {
        parameters_ = parameters;
        CreateViewContents();
        return AAX_SUCCESS;
    }
    virtual AAX_Result Uninitialize() {
        if (container_ != nullptr) SetViewContainer(nullptr);
        parameters_ = nullptr;
        return AAX_SUCCESS;
    }
    virtual AAX_Result NotificationReceived(AAX_CTypeID, const void*, std::uint32_t) {
        return AAX_SUCCESS;
    }
    virtual AAX_Result SetViewContainer(IACFUnknown* container) {
        if (container == nullptr) DeleteViewContainer();
        container_ = static_cast<AAX_IViewContainer*>(container);
        if (container != nullptr) CreateViewContainer();
        return AAX_SUCCESS;
    }
    virtual AAX_Result GetViewSize(AAX_Point*) const { return AAX_SUCCESS; }
    virtual AAX_Result Draw(AAX_Rect*) { return AAX_SUCCESS; }
    virtual AAX_Result TimerWakeup() { return AAX_SUCCESS; }

    AAX_IEffectParameters* GetEffectParameters() { return parameters_; }
    AAX_IViewContainer* GetViewContainer() { return container_; }
    void* GetViewContainerPtr() { return container_ == nullptr ? nullptr : container_->window; }

  protected:
    virtual void CreateViewContents() = 0;
    virtual void CreateViewContainer() = 0;
    virtual void DeleteViewContainer() = 0;

  private:
    AAX_IEffectParameters* parameters_ = nullptr;
    AAX_IViewContainer* container_ = nullptr;
};
