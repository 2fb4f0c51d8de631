// One parameter of the plug-in as VST 3 knows it.
#pragma once

#include "core/RealTime.h"
#include "core/Relaxed.h"
#include "frame/PluginParameter.h"
#include "hosting/ParameterMap.h"
#include "public.sdk/source/vst/vstparameters.h"

namespace Vardo {

/// Values are always the plug-in's own; nothing is stored twice but what the host was last told or
/// said itself, which is how changes by the plug-in are found.
/// Threads: `setFromHost` on any thread; the rest on the main thread.
class VardoVST3Parameter final : public Steinberg::Vst::Parameter {
  public:
    struct Role {
        bool isProgramChange = false;
        bool isBypass = false;
        Steinberg::int32 stepCount = 0;
    };

    /// `parameter` is the one at `id` in `map`; both outlive this.
    VardoVST3Parameter(IPluginParameter& parameter,
                       Steinberg::Vst::ParamID id,
                       ParameterMap& map,
                       Role role);

    // --- Parameter; normalised values are 0..1, anything else is brought there ---
    bool setNormalized(Steinberg::Vst::ParamValue value) override;
    void toString(Steinberg::Vst::ParamValue value, Steinberg::Vst::String128 text) const override;
    bool fromString(const Steinberg::Vst::TChar* text,
                    Steinberg::Vst::ParamValue& value) const override;
    Steinberg::Vst::ParamValue toPlain(Steinberg::Vst::ParamValue value) const override;
    Steinberg::Vst::ParamValue toNormalized(Steinberg::Vst::ParamValue plain) const override;

    /// The plug-in's value of the moment.
    Steinberg::Vst::ParamValue value() const;
    /// False where nothing changed: the value is the same, or the user holds the control and the
    /// host only echoes what it was told.
    bool setFromHost(Steinberg::Vst::ParamValue value) noexcept ORVEL_NONBLOCKING;

    /// The host knows the value of the moment.
    void markKnown() { known_ = parameter_.getNormalizedValue(); }
    /// The plug-in changed it by itself, and nobody told the host.
    bool isNewsToHost() const;

    OBJ_METHODS(VardoVST3Parameter, Steinberg::Vst::Parameter)

  private:
    int index() const { return static_cast<int>(info.id); }

    IPluginParameter& parameter_;
    ParameterMap& map_;
    Core::Relaxed<float> known_{0.0F};
};

/// 0..1; a NaN is 0.
Steinberg::Vst::ParamValue normalizedOf(Steinberg::Vst::ParamValue value) noexcept;

} // namespace Vardo
