// The VST3 adapter: one plug-in of this module as a VST 3 effect.
#pragma once

#include "BusBlock.h"
#include "HostContext.h"
#include "HostLoop.h"
#include "SingleComponentEffect.h"
#include "VardoVST3Parameter.h"
#include "frame/ChannelBuffer.h"
#include "frame/EventList.h"
#include "frame/PluginBase.h"
#include "frame/PluginDescription.h"
#include "frame/ProcessContext.h"
#include "frame/VardoCallback.h"
#include "hosting/ChangeDelivery.h"
#include "hosting/Limits.h"
#include "hosting/PluginGate.h"
#include "pluginterfaces/vst/ivstmidicontrollers.h"

#include <memory>
#include <vector>

namespace Vardo {

class IPluginEditor;
class Vardo_VST3_EditorView;

/// Carries an `IPluginBase` into a VST3 host, processor and controller in one, and is the
/// `VardoCallback` by which it talks back.
///
/// Threads: the host's calls come as VST 3 has it: `process` on its audio thread, the rest on its
/// main thread; a host that mixes them up loses analysis of a block, never more. The audio thread
/// waits for nothing: where the main thread is exchanging the buffers, that block goes from input
/// to output unseen. Only `terminate` and the last `release` must not meet a `process`.
///
/// `IPluginBase::onIdle` (what the plug-in changed by itself, on its way to the host) is called
/// from the host's loop where it lends one, from an open editor's timer, and on the main thread
/// before the state is read, after it is written and when the effect is switched on or off.
class Vardo_VST3 final : public SingleComponentEffect,
                         public VardoCallback,
                         public ParameterChangeListener,
                         public Steinberg::Vst::IMidiMapping,
                         private HostLoopListener,
                         private HostContextListener {
  public:
    static constexpr Steinberg::Vst::ParamID kBypassId = 0x4D427970;          // 'MByp'
    static constexpr Steinberg::Vst::ProgramListID kProgramList = 0x506C7374; // 'Plst'
    /// MIDI controllers as parameters: this, and upwards by channel and then controller.
    static constexpr Steinberg::Vst::ParamID kFirstMidiId = 0x43303030;
    static constexpr int kMidiChannels = 16;
    static constexpr int kMidiControllers = Steinberg::Vst::kCountCtrlNumber; // per channel
    static constexpr int kMidiIds = kMidiChannels * kMidiControllers;
    static_assert(kMidiIds == 2080);

    /// For the module's record of this index. Fails: lets std::bad_alloc through. A plug-in that
    /// cannot be made is tried again in `initialize`.
    explicit Vardo_VST3(std::size_t recordIndex);
    ~Vardo_VST3() override;

    // --- set-up ---
    Steinberg::tresult PLUGIN_API initialize(Steinberg::FUnknown* context) override;
    Steinberg::tresult PLUGIN_API terminate() override;
    Steinberg::tresult PLUGIN_API setActive(Steinberg::TBool state) override;
    Steinberg::tresult PLUGIN_API setupProcessing(Steinberg::Vst::ProcessSetup& setup) override;

    // --- audio ---
    Steinberg::tresult PLUGIN_API process(Steinberg::Vst::ProcessData& data) override;
    Steinberg::uint32 PLUGIN_API getTailSamples() override { return 576000000; }
    Steinberg::uint32 PLUGIN_API getLatencySamples() override;
    Steinberg::uint32 PLUGIN_API getProcessContextRequirements() override {
        return kNeedTempo | kNeedTransportState | kNeedProjectTimeMusic;
    }

    // --- state: what the host read from the component ---
    Steinberg::tresult PLUGIN_API setComponentState(Steinberg::IBStream* state) override;

    // --- parameters ---
    Steinberg::tresult PLUGIN_API getParameterInfo(Steinberg::int32 index,
                                                   Steinberg::Vst::ParameterInfo& info) override;
    Steinberg::tresult PLUGIN_API getParamStringByValue(Steinberg::Vst::ParamID id,
                                                        Steinberg::Vst::ParamValue value,
                                                        Steinberg::Vst::String128 text) override;
    Steinberg::tresult PLUGIN_API getParamValueByString(Steinberg::Vst::ParamID id,
                                                        Steinberg::Vst::TChar* text,
                                                        Steinberg::Vst::ParamValue& value) override;
    Steinberg::Vst::ParamValue PLUGIN_API
    normalizedParamToPlain(Steinberg::Vst::ParamID id, Steinberg::Vst::ParamValue value) override;
    Steinberg::Vst::ParamValue PLUGIN_API
    plainParamToNormalized(Steinberg::Vst::ParamID id, Steinberg::Vst::ParamValue plain) override;
    Steinberg::Vst::ParamValue PLUGIN_API getParamNormalized(Steinberg::Vst::ParamID id) override;
    Steinberg::tresult PLUGIN_API setParamNormalized(Steinberg::Vst::ParamID id,
                                                     Steinberg::Vst::ParamValue value) override;
    Steinberg::tresult PLUGIN_API
    setComponentHandler(Steinberg::Vst::IComponentHandler* handler) override;
    Steinberg::tresult PLUGIN_API setKnobMode(Steinberg::Vst::KnobMode mode) override;
    Steinberg::IPlugView* PLUGIN_API createView(Steinberg::FIDString name) override;

    // --- units and programs ---
    Steinberg::tresult PLUGIN_API getUnitInfo(Steinberg::int32 index,
                                              Steinberg::Vst::UnitInfo& info) override;
    Steinberg::int32 PLUGIN_API getProgramListCount() override;
    Steinberg::tresult PLUGIN_API
    getProgramListInfo(Steinberg::int32 index, Steinberg::Vst::ProgramListInfo& info) override;
    Steinberg::tresult PLUGIN_API getProgramName(Steinberg::Vst::ProgramListID list,
                                                 Steinberg::int32 program,
                                                 Steinberg::Vst::String128 name) override;
    Steinberg::tresult PLUGIN_API getProgramInfo(Steinberg::Vst::ProgramListID list,
                                                 Steinberg::int32 program,
                                                 Steinberg::Vst::CString attribute,
                                                 Steinberg::Vst::String128 value) override;

    // --- IMidiMapping ---
    Steinberg::tresult PLUGIN_API getMidiControllerAssignment(Steinberg::int32 bus,
                                                              Steinberg::int16 channel,
                                                              Steinberg::Vst::CtrlNumber controller,
                                                              Steinberg::Vst::ParamID& id) override;

    // --- VardoCallback ---
    int getHostVersion() override { return 0; }
    int updateDisplay() override;
    int ioChanged() override;
    int setLatency(int samples) override;
    int beginEdit(int parameterIndex) override;
    int endEdit(int parameterIndex) override;
    void automate(int parameterIndex, float value) override;
    float getTempo() override { return tempo_; }
    int getInterfaceKind() override { return static_cast<int>(InterfaceKind::vst3); }
    void refreshParameters() override;

    // --- ParameterChangeListener ---
    void parameterChanged(IPluginParameter* parameter) override;

    Steinberg::tresult PLUGIN_API queryInterface(const Steinberg::TUID iid, void** obj) override;
    REFCOUNT_METHODS(SingleComponentEffect)

    // --- for its views; main thread ---
    /// Null without one, and after `terminate`.
    IPluginEditor* editor();
    /// The plug-in has one window: it belongs to the view that opened it last.
    Vardo_VST3_EditorView* editorOwner() const noexcept { return editorOwner_; }
    void setEditorOwner(Vardo_VST3_EditorView* view) noexcept { editorOwner_ = view; }
    void viewGone(const Vardo_VST3_EditorView* view);
    /// Takes a place in the loop of whichever of the host's objects lends one: first of `frame`,
    /// which may be null, then of those that the effect knows. Gives whether `loop` runs.
    bool enterHostLoop(HostLoop& loop, Steinberg::FUnknown* frame, int periodMs);
    /// A turn of the host's loop: this is its main thread, and it may be called back.
    void onHostTurn();

  protected:
    Steinberg::tresult setComponentPartState(Steinberg::IBStream* state) override;
    Steinberg::tresult getComponentPartState(Steinberg::IBStream* state) override;
    /// The bypass alone: all other state is the component's.
    Steinberg::tresult setControllerState(Steinberg::IBStream* state) override;
    Steinberg::tresult getControllerState(Steinberg::IBStream* state) override;

  private:
    // Set-up.
    bool makePlugin();
    void destroyPlugin();
    void addBuses();
    void addParameters();
    void addMidiParameters();
    void addBypass();
    bool isInstrument() const noexcept;
    BusShape shape() const noexcept;
    void announceBlockSize(int frames); // only inside the gate
    void lookForHostLoop();
    /// Tells the host what the plug-in changed by itself. Main thread; on others it does nothing.
    void deliverChanges();
    void markAllKnown();
    /// Null for an id that is none of the plug-in's.
    VardoVST3Parameter* pluginParameter(Steinberg::Vst::ParamID id) const noexcept {
        return id < pluginParameters_.size() ? pluginParameters_[id] : nullptr;
    }

    // Audio.
    struct Changes {
        bool bypassWentOff = false;
    };
    Changes takeParameterChanges(Steinberg::Vst::IParameterChanges* changes, bool inside) noexcept;
    void takeMidiController(Steinberg::Vst::ParamID id,
                            Steinberg::int32 offset,
                            Steinberg::Vst::ParamValue value) noexcept;
    void takeEvents(Steinberg::Vst::IEventList* events) noexcept;
    void queueMidi(const MidiRecord& record) noexcept;
    void render(const BusBlock& block, const Steinberg::Vst::ProcessContext* transport);
    void describeTransport(const Steinberg::Vst::ProcessContext* transport,
                           CProcessContext& context) noexcept;

    // --- HostLoopListener, HostContextListener ---
    void onHostTimer() override { onHostTurn(); }
    void onHostEvents() override {}
    void hostContextCame() override { lookForHostLoop(); }

    PluginDescription record_;
    std::unique_ptr<Vardo::IPluginBase> plugin_; // the SDK has an interface of this name too
    ParameterMap map_;
    std::vector<VardoVST3Parameter*> pluginParameters_; // by id; the container owns them
    ChangeDelivery changes_;
    Core::Relaxed<bool> valuesChanged_{false}; // by the plug-in; the host does not know yet

    Core::Relaxed<double> sampleRate_{44100.0}; // Hz
    int blockSize_ = 4096;                      // frames; only inside the gate
    Core::Relaxed<int> latency_{0};
    Core::Relaxed<float> tempo_{10.0F};   // beats per minute
    Core::Relaxed<bool> bypassed_{false}; // as the blocks so far had it
    bool initialized_ = false;

    PluginGate gate_; // before the buffers, the MIDI queue and the plug-in's process and set-up
    CNChannelBuffer input_;
    CNChannelBuffer output_;
    EventList midi_;

    HostLoop idleLoop_; // for the time without an editor
    std::vector<Vardo_VST3_EditorView*> views_;
    Vardo_VST3_EditorView* editorOwner_ = nullptr;
};

} // namespace Vardo
