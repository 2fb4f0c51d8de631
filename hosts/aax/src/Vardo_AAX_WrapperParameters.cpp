// Values, bypass and gestures between the host's parameters and the plug-in's.
#include "Vardo_AAX_Wrapper.h"

#include "Guard.h"

#include "frame/PluginParameter.h"

#include <algorithm>
#include <cmath>
#include <cstring>

using namespace Vardo;
using namespace Vardo::Aax;

int Vardo_AAX_Wrapper::indexOf(AAX_CParamID id) const noexcept {
    const auto found = std::find(idTexts_.begin(), idTexts_.end(), id);
    return found == idTexts_.end() ? -1 : static_cast<int>(found - idTexts_.begin());
}

AAX_CParamID Vardo_AAX_Wrapper::idText(int index) const noexcept {
    const bool inRange = index >= 0 && index < static_cast<int>(idTexts_.size());
    return inRange ? idTexts_[static_cast<std::size_t>(index)].c_str() : nullptr;
}

// --- from the host ------------------------------------------------------------------------------

AAX_Result Vardo_AAX_Wrapper::GetMasterBypassParameter(AAX_IString* id) const {
    if (id == nullptr) return AAX_ERROR_NULL_OBJECT;
    return guarded([&]() -> AAX_Result {
        if (bypassIndex_ < 0) return AAX_CEffectParameters::GetMasterBypassParameter(id);
        id->Set(idText(bypassIndex_));
        return AAX_SUCCESS;
    });
}

AAX_Result Vardo_AAX_Wrapper::UpdateParameterNormalizedValue(AAX_CParamID id,
                                                             double value,
                                                             AAX_EUpdateSource source) {
    if (id == nullptr) return AAX_ERROR_NULL_OBJECT;
    if (!std::isfinite(value)) return AAX_ERROR_INVALID_ARGUMENT;
    return guarded([&] {
        // The SDK's chunk says again what ours says better, and a change by the plug-in is known
        // to it. The copy that the host reads follows in every case.
        const bool ownChange = changingThread_.load() == std::this_thread::get_id();
        if (source != AAX_eUpdateSource_Chunk && !ownChange) routeToPlugin(id, value, source);
        return AAX_CEffectParameters::UpdateParameterNormalizedValue(id, value, source);
    });
}

void Vardo_AAX_Wrapper::routeToPlugin(AAX_CParamID id, double value, AAX_EUpdateSource source) {
    const int index = indexOf(id);
    if (IPluginParameter* parameter = parameters_.parameter(index)) {
        // Listeners that hear at once live on the main thread.
        const bool fromPlugin = source == AAX_eUpdateSource_Parameter && delivery_.isOnMainThread();
        const ParameterMap::HostCall mark(parameters_, index);
        parameter->setNormalizedValue(value, fromPlugin ? kFromEditor : kFromHost);
    } else if (bypassIndex_ < 0 && plugin_ != nullptr &&
               std::strcmp(id, cDefaultMasterBypassID) == 0) {
        plugin_->setBypass(value != 0);
    }
}

AAX_Result Vardo_AAX_Wrapper::GetNumberOfChanges(int32_t* count) const {
    if (count == nullptr) return AAX_ERROR_NULL_OBJECT;
    // Always another number: the state has parts that are no parameters, so the host must look.
    changes_ = (changes_ + 1) & 0x7FFFFFFFU;
    *count = static_cast<int32_t>(changes_.load());
    return AAX_SUCCESS;
}

// --- to the host --------------------------------------------------------------------------------

int Vardo_AAX_Wrapper::beginEdit(int parameterIndex) {
    if (AAX_CParamID id = idText(parameterIndex)) TouchParameter(id);
    return 1;
}

int Vardo_AAX_Wrapper::endEdit(int parameterIndex) {
    if (AAX_CParamID id = idText(parameterIndex)) ReleaseParameter(id);
    return 1;
}

void Vardo_AAX_Wrapper::automate(int parameterIndex, float value) {
    AAX_CParamID id = idText(parameterIndex);
    // Inside the host's own call it is an echo.
    if (id == nullptr || !std::isfinite(value) || parameters_.isHostCall(parameterIndex)) return;
    struct Changing {
        Core::Relaxed<std::thread::id>& thread;
        const std::thread::id outer;
        ~Changing() { thread = outer; }
    } const changing{changingThread_, changingThread_};
    changingThread_ = std::this_thread::get_id();
    SetParameterNormalizedValue(id, static_cast<double>(value));
}

void Vardo_AAX_Wrapper::idle() {
    delivery_.claimThread();
    delivery_.deliver(plugin_.get());
}
