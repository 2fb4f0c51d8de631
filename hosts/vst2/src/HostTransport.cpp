// Which of the host's words on time are taken.
#include "HostTransport.h"

#include "hosting/Limits.h"

#include <cmath>

namespace Vardo {

double HostTransport::tempoOf(const vst2::VstTimeInfo* info) const noexcept {
    const bool good =
        info != nullptr && (info->flags & vst2::kVstTempoValid) != 0 && isTempo(info->tempo);
    return good ? info->tempo : tempo();
}

HostTransport::State HostTransport::update(const vst2::VstTimeInfo* info) noexcept {
    if (info == nullptr) return {samplePosition_, ppqPosition_, tempo_, false};

    tempo_ = tempoOf(info);
    if (std::isfinite(info->sampleRate) && info->sampleRate > 0) sampleRate_ = info->sampleRate;
    if (std::isfinite(info->samplePos)) samplePosition_ = info->samplePos;
    if ((info->flags & vst2::kVstPpqPosValid) != 0 && std::isfinite(info->ppqPos))
        ppqPosition_ = info->ppqPos;
    else // as if the tempo had always been this one
        ppqPosition_ = samplePosition_ / sampleRate_ * tempo_ / 60.0;

    return {samplePosition_, ppqPosition_, tempo_, (info->flags & vst2::kVstTransportPlaying) != 0};
}

} // namespace Vardo
