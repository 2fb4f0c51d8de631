// Processor and controller of VST 3 in one object.
#pragma once

#include "pluginterfaces/vst/ivstaudioprocessor.h"
#include "pluginterfaces/vst/ivstcomponent.h"
#include "public.sdk/source/vst/vstbus.h"
#include "public.sdk/source/vst/vsteditcontroller.h"

namespace Vardo {

/// The controller's half. Its state goes by a name of its own, as both halves have a `setState`.
class ControllerHalf : public Steinberg::Vst::EditControllerEx1 {
  public:
    Steinberg::tresult PLUGIN_API setState(Steinberg::IBStream* state) final {
        return setControllerState(state);
    }
    Steinberg::tresult PLUGIN_API getState(Steinberg::IBStream* state) final {
        return getControllerState(state);
    }

  protected:
    virtual Steinberg::tresult setControllerState(Steinberg::IBStream* state) = 0;
    virtual Steinberg::tresult getControllerState(Steinberg::IBStream* state) = 0;
};

/// The component's half.
class ComponentHalf : public Steinberg::Vst::IComponent {
  public:
    Steinberg::tresult PLUGIN_API setState(Steinberg::IBStream* state) final {
        return setComponentPartState(state);
    }
    Steinberg::tresult PLUGIN_API getState(Steinberg::IBStream* state) final {
        return getComponentPartState(state);
    }

  protected:
    ~ComponentHalf() = default;
    virtual Steinberg::tresult setComponentPartState(Steinberg::IBStream* state) = 0;
    virtual Steinberg::tresult getComponentPartState(Steinberg::IBStream* state) = 0;
};

/// Buses, and the answers that are the same for every effect. The SDK's own class of this purpose
/// is not part of the Debian package.
/// Threads: the host's main thread, and its audio thread for the processor's calls. Any pointer
/// may be null and any index wrong: the call then fails and nothing else happens.
class SingleComponentEffect : public ControllerHalf,
                              public ComponentHalf,
                              public Steinberg::Vst::IAudioProcessor,
                              public Steinberg::Vst::IProcessContextRequirements {
  public:
    // --- IPluginBase, of both halves ---
    Steinberg::tresult PLUGIN_API initialize(Steinberg::FUnknown* context) override;
    Steinberg::tresult PLUGIN_API terminate() override;

    // --- IComponent ---
    /// There is no controller of its own.
    Steinberg::tresult PLUGIN_API getControllerClassId(Steinberg::TUID) override {
        return Steinberg::kNotImplemented;
    }
    Steinberg::tresult PLUGIN_API setIoMode(Steinberg::Vst::IoMode) override {
        return Steinberg::kNotImplemented;
    }
    Steinberg::int32 PLUGIN_API getBusCount(Steinberg::Vst::MediaType type,
                                            Steinberg::Vst::BusDirection direction) override;
    Steinberg::tresult PLUGIN_API getBusInfo(Steinberg::Vst::MediaType type,
                                             Steinberg::Vst::BusDirection direction,
                                             Steinberg::int32 index,
                                             Steinberg::Vst::BusInfo& info) override;
    Steinberg::tresult PLUGIN_API getRoutingInfo(Steinberg::Vst::RoutingInfo&,
                                                 Steinberg::Vst::RoutingInfo&) override {
        return Steinberg::kNotImplemented;
    }
    Steinberg::tresult PLUGIN_API activateBus(Steinberg::Vst::MediaType type,
                                              Steinberg::Vst::BusDirection direction,
                                              Steinberg::int32 index,
                                              Steinberg::TBool state) override;

    // --- IAudioProcessor ---
    /// Mono and stereo, each bus as the host likes. Anything else leaves all buses as they were.
    Steinberg::tresult PLUGIN_API setBusArrangements(Steinberg::Vst::SpeakerArrangement* inputs,
                                                     Steinberg::int32 inputCount,
                                                     Steinberg::Vst::SpeakerArrangement* outputs,
                                                     Steinberg::int32 outputCount) override;
    Steinberg::tresult PLUGIN_API
    getBusArrangement(Steinberg::Vst::BusDirection direction,
                      Steinberg::int32 index,
                      Steinberg::Vst::SpeakerArrangement& arrangement) override;
    Steinberg::tresult PLUGIN_API canProcessSampleSize(Steinberg::int32 size) override;
    Steinberg::tresult PLUGIN_API setProcessing(Steinberg::TBool) override {
        return Steinberg::kNotImplemented;
    }

    // --- IConnectionPoint: the halves need no messages, and hold no peer ---
    Steinberg::tresult PLUGIN_API connect(Steinberg::Vst::IConnectionPoint* other) override;
    Steinberg::tresult PLUGIN_API disconnect(Steinberg::Vst::IConnectionPoint* other) override;
    Steinberg::tresult PLUGIN_API notify(Steinberg::Vst::IMessage*) override {
        return Steinberg::kResultFalse;
    }

    Steinberg::tresult PLUGIN_API queryInterface(const Steinberg::TUID iid, void** obj) override;
    REFCOUNT_METHODS(Steinberg::Vst::EditControllerEx1)

  protected:
    void addAudioBus(Steinberg::Vst::BusDirection direction,
                     const char* name,
                     Steinberg::Vst::BusType type);
    void addEventInput(const char* name, int channels);

  private:
    using Buses = Steinberg::Vst::BusList;
    Buses* buses(Steinberg::Vst::MediaType type, Steinberg::Vst::BusDirection direction);
    Steinberg::Vst::Bus* bus(Steinberg::Vst::MediaType type,
                             Steinberg::Vst::BusDirection direction,
                             Steinberg::int32 index);

    Buses audioInputs_{Steinberg::Vst::kAudio, Steinberg::Vst::kInput};
    Buses audioOutputs_{Steinberg::Vst::kAudio, Steinberg::Vst::kOutput};
    Buses eventInputs_{Steinberg::Vst::kEvent, Steinberg::Vst::kInput};
    Buses eventOutputs_{Steinberg::Vst::kEvent, Steinberg::Vst::kOutput};
};

} // namespace Vardo
