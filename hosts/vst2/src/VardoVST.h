// The VST2 adapter: one plug-in of this module as a VST 2.4 effect.
#pragma once

#include "AudioEffectX.h"
#include "HostTransport.h"
#include "MidiQueue.h"
#include "frame/ChannelBuffer.h"
#include "frame/PluginBase.h"
#include "frame/PluginDescription.h"
#include "frame/VardoCallback.h"
#include "hosting/ChangeDelivery.h"
#include "hosting/HostBlock.h"
#include "hosting/Limits.h"
#include "hosting/ParameterMap.h"
#include "hosting/PluginGate.h"

#include <memory>

namespace Vardo {

/// Carries an `IPluginBase` into a VST2 host and is the `VardoCallback` by which it talks back.
///
/// With several plug-ins in the module the effect is a shell: in a host that knows shells, an
/// effect made for no certain id has no plug-in and only lists what there is.
///
/// Threads: the host's calls come as VST 2.4 has it: audio, events and `setParameter` on its audio
/// threads, the rest on its main thread; a host that mixes them up loses analysis of a block, never
/// more. The audio thread waits for nothing: where the main thread is exchanging the buffers, that
/// block goes from input to output unseen.
///
/// `IPluginBase::onIdle` (what the plug-in changed by itself, on its way to the host) is called
/// where a host is known to be on its main thread and ready to be called back: in its idle calls,
/// and on the thread of these or of `open` also before it reads the state, after it writes the
/// state and when it suspends or resumes. So the host hears of such changes with the editor closed.
class VardoVST final : public vst2::AudioEffectX, public VardoCallback {
  public:
    /// Fails: lets std::bad_alloc through. A plug-in that cannot be made leaves an effect without
    /// parameters and state.
    explicit VardoVST(vst2::HostCallback host);
    ~VardoVST() override;

    // --- AudioEffectX ---
    void open() override;
    void suspend() override;
    void resume() override;
    void setSampleRate(float rate) override;
    void setBlockSize(std::int32_t frames) override;
    void processReplacing(float** inputs, float** outputs, std::int32_t frames) override;
    void processAccumulating(float** inputs, float** outputs, std::int32_t frames) override;
    bool processEvents(const vst2::VstEvents& events) override;
    void setParameter(std::int32_t index, float value) override;
    float getParameter(std::int32_t index) override;
    void getParameterLabel(std::int32_t index, char* label) override;
    void getParameterDisplay(std::int32_t index, char* text) override;
    void getParameterName(std::int32_t index, char* text) override;
    bool canParameterBeAutomated(std::int32_t index) override;
    bool string2parameter(std::int32_t index, const char* text) override;
    bool getParameterProperties(std::int32_t index, vst2::VstParameterProperties& p) override;
    std::intptr_t getChunk(void** data, bool isPreset) override;
    std::intptr_t setChunk(const void* data, std::intptr_t size, bool isPreset) override;
    bool getInputProperties(std::int32_t index, vst2::VstPinProperties& pin) override;
    bool getOutputProperties(std::int32_t index, vst2::VstPinProperties& pin) override;
    bool setSpeakerArrangement(const vst2::VstSpeakerArrangement* input,
                               const vst2::VstSpeakerArrangement* output) override;
    bool setBypass(bool bypassed) override;
    bool getEffectName(char* name) override;
    bool getVendorString(char* text) override;
    bool getProductString(char* text) override;
    std::int32_t getVendorVersion() override;
    std::int32_t getNextShellPlugin(char* name) override;
    std::intptr_t
    vendorSpecific(std::int32_t index, std::intptr_t value, void* ptr, float opt) override;
    std::int32_t canDo(const char* text) override;
    std::int32_t getGetTailSize() override { return 2400; }
    std::int32_t getPlugCategory() override;
    void idle() override;

    // --- VardoCallback ---
    void hostIdle() override;
    int getHostVendorString(char* text) override;
    int getHostProductString(char* text) override;
    int getHostVersion() override;
    int updateDisplay() override;
    int ioChanged() override;
    int setNumInputPairs(int pairs) override;
    int setNumOutputPairs(int pairs) override;
    int setLatency(int samples) override;
    int beginEdit(int parameterIndex) override;
    int endEdit(int parameterIndex) override;
    void automate(int parameterIndex, float value) override;
    float getTempo() override;
    int getInterfaceKind() override;
    void refreshParameters() override;

  private:
    // Construction.
    bool isShell() const noexcept { return records_.size() > 1; }
    std::uint32_t chooseId();
    void describe();
    bool wantsSidechainPair();

    // Audio.
    void render(const HostBlock& block) noexcept ORVEL_NONBLOCKING;
    /// False when the plug-in did not see the block.
    bool renderIfOpen(const HostBlock& block);
    void renderInside(const HostBlock& block, const HostTransport::State& transport);
    HostBlock hostBlock(float** inputs, float** outputs, int frames, OutputMode mode) const;

    // Buffers; only inside the gate.
    void announceBlockSize(int frames);
    void resizeBuffers(int frames);

    /// The buffers take the shape of the channels that the host brings.
    void followChannels();
    int inputBufferChannels() const noexcept;
    int outputBufferChannels() const noexcept;

    void deliverChanges() { changes_.deliver(plugin_.get()); }

    PluginDescriptionList records_;
    PluginDescription record_; // of plugin_
    std::unique_ptr<IPluginBase> plugin_;
    ParameterMap parameters_;
    HostTransport transport_;
    MidiQueue midi_;

    std::int32_t category_ = vst2::kPlugCategShell;
    Core::Relaxed<int> shellIndex_{0};
    Core::Relaxed<bool> bypassed_{false};
    Core::Relaxed<int> inputPairs_{1};
    Core::Relaxed<int> outputPairs_{1};
    Core::Relaxed<int> inputChannels_{0}; // that the host brings
    Core::Relaxed<int> outputChannels_{0};
    Core::Relaxed<bool> pairsChanged_{false}; // by the plug-in; the host follows by its next resume

    PluginGate gate_; // before the buffers and the plug-in's process and set-up
    CNChannelBuffer input_;
    CNChannelBuffer output_;
    ChangeDelivery changes_;
};

/// The body of the module's entry points: asks the host for its version and makes an effect, which
/// the host closes. Null for no host, for one without a version, and when memory is short.
vst2::AEffect* createEffect(vst2::HostCallback host) noexcept;

} // namespace Vardo
