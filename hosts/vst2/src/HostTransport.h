// What the host last said about tempo and position.
#pragma once

#include "Vst2Abi.h"
#include "core/RealTime.h"
#include "core/Relaxed.h"

namespace Vardo {

/// Keeps the last good value of everything a host marks valid. At first: 120 beats per minute,
/// 44100 Hz, stopped at 0.
/// Threads: `update` on the audio thread, `tempo` on any.
class HostTransport {
  public:
    struct State {
        double samplePosition;
        double ppqPosition; ///< quarter notes
        double tempo;       ///< beats per minute
        bool playing;
    };

    /// The transport of one block. `info` null: a host with nothing to say, which stands still.
    State update(const vst2::VstTimeInfo* info) noexcept ORVEL_NONBLOCKING;
    /// Beats per minute.
    double tempo() const noexcept { return tempo_; }
    /// The record's tempo where it is marked valid and sensible, else the last good one.
    double tempoOf(const vst2::VstTimeInfo* info) const noexcept ORVEL_NONBLOCKING;

  private:
    Core::Relaxed<double> samplePosition_{0.0};
    Core::Relaxed<double> ppqPosition_{0.0};
    Core::Relaxed<double> tempo_{120.0};
    Core::Relaxed<double> sampleRate_{44100.0};
};

} // namespace Vardo
