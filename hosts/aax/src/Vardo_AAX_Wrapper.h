// The AAX adapter: one plug-in of this module as an AAX effect on the host's native path.
#pragma once

#include "AlgorithmContext.h"

#include "AAX_CEffectParameters.h"
#include "core/RealTime.h"
#include "core/Relaxed.h"
#include "frame/EventList.h"
#include "frame/PluginBase.h"
#include "frame/PluginDescription.h"
#include "frame/VardoCallback.h"
#include "hosting/ChangeDelivery.h"
#include "hosting/ParameterMap.h"

#include <cstddef>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace Vardo::Aax {

class ChannelPointers;

/// Channels of the two stems of an algorithm: 1 or 2.
struct StemPair {
    int inputChannels;
    int outputChannels;
};

/// The chunk that holds the plug-in's whole state, beside the one in which the SDK keeps the
/// parameters that a host sees.
inline constexpr AAX_CTypeID kStateChunk = fourCharacterCode("ZMTR");
/// Bytes. No state is like this; a size beyond it is a mistake.
inline constexpr std::int32_t kLargestState = 16 << 20;

} // namespace Vardo::Aax

/// Carries an `IPluginBase` into an AAX host and is the `VardoCallback` by which it talks back.
///
/// The host knows each automatable parameter by a text, which is the parameter's name. One of them
/// called "kBypass" or "Bypass" is the effect's bypass; where there is none, the adapter adds one
/// and tells the plug-in of it through `IPluginBase::setBypass`.
///
/// Threads: `render` on the host's audio thread, the rest on its main thread; parameters may also
/// be updated on others. There is no lock. Errors are the SDK's codes; nothing throws.
class Vardo_AAX_Wrapper final : public AAX_CEffectParameters, public Vardo::VardoCallback {
  public:
    /// `recordIndex`: which of the module's plug-ins. It is made in `EffectInit`.
    explicit Vardo_AAX_Wrapper(int recordIndex)
        : recordIndex_(recordIndex) {}
    ~Vardo_AAX_Wrapper() override;
    Vardo_AAX_Wrapper(const Vardo_AAX_Wrapper&) = delete;
    Vardo_AAX_Wrapper& operator=(const Vardo_AAX_Wrapper&) = delete;

    // --- AAX_CEffectParameters ---
    AAX_Result ResetFieldData(AAX_CFieldIndex field, void* data, uint32_t size) const override;
    AAX_Result GetMasterBypassParameter(AAX_IString* id) const override;
    AAX_Result UpdateParameterNormalizedValue(AAX_CParamID id,
                                              double value,
                                              AAX_EUpdateSource source) override;
    AAX_Result GetNumberOfChunks(int32_t* count) const override;
    AAX_Result GetChunkIDFromIndex(int32_t index, AAX_CTypeID* id) const override;
    AAX_Result GetChunkSize(AAX_CTypeID id, uint32_t* size) const override;
    AAX_Result GetChunk(AAX_CTypeID id, AAX_SPlugInChunk* chunk) const override;
    AAX_Result SetChunk(AAX_CTypeID id, const AAX_SPlugInChunk* chunk) override;
    AAX_Result GetNumberOfChanges(int32_t* count) const override;

    // --- VardoCallback ---
    int getHostProductString(char* text) override;
    int getHostVersion() override { return 0; }
    int setLatency(int samples) override;
    int beginEdit(int parameterIndex) override;
    int endEdit(int parameterIndex) override;
    void automate(int parameterIndex, float value) override;
    float getTempo() override;
    int getInterfaceKind() override;

    // --- for the render function and the editor ---
    /// One block of one instance. A plug-in that fails or is missing lets the audio pass.
    void render(const Vardo::Aax::AlgorithmContext& context,
                Vardo::Aax::StemPair stems) noexcept ORVEL_NONBLOCKING;
    /// Null where the plug-in has none. It belongs to the plug-in, which lives as long as this.
    Vardo::IPluginEditor* editor();
    /// A moment on the main thread when the host is ready to hear what the plug-in changed.
    void idle();

  protected:
    AAX_Result EffectInit() override;

  private:
    // Construction.
    bool findRecord();
    void prepareBuffers();
    void setUpPlugin();
    void addParameters();
    void addBypassParameter();

    // Parameters.
    int indexOf(AAX_CParamID id) const noexcept;
    AAX_CParamID idText(int index) const noexcept;
    void routeToPlugin(AAX_CParamID id, double value, AAX_EUpdateSource source);

    // State.
    AAX_Result stateSize(uint32_t& size) const;
    AAX_Result copyState(AAX_SPlugInChunk& chunk) const;
    AAX_Result setState(const AAX_SPlugInChunk& chunk);

    // Audio.
    void renderPieces(const Vardo::Aax::AlgorithmContext& context,
                      const Vardo::Aax::ChannelPointers& inputs,
                      const Vardo::Aax::ChannelPointers& outputs);
    void handOverMidi(const Vardo::Aax::AlgorithmContext& context);
    double sampleRateOf(const Vardo::Aax::AlgorithmContext& context) const noexcept;

    int recordIndex_;
    Vardo::PluginDescription record_;
    std::unique_ptr<Vardo::IPluginBase> plugin_;
    Vardo::ParameterMap parameters_;
    std::vector<std::string> idTexts_; // by map position
    int bypassIndex_ = -1;             // the plug-in's own bypass parameter

    mutable std::vector<std::byte> state_; // as of the last size query
    mutable Core::Relaxed<uint32_t> changes_{0};
    /// The thread on which the plug-in is changing a parameter by itself right now.
    Core::Relaxed<std::thread::id> changingThread_;
    mutable Vardo::ChangeDelivery delivery_;

    int outputPairs_ = 1;
    bool hasSidechain_ = false;
    bool takesMidi_ = false;
    double sampleRate_ = 44100.0; // Hz
    Vardo::EventList events_;
    std::vector<float> silence_; // stands in for an input that the host does not bring
    std::vector<float> scrap_;   // and this one for an output
};
