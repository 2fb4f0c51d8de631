// How long the scope's picture lasts, and where it starts over.
#pragma once

#include "core/RealTime.h"
#include "core/Relaxed.h"

#include <cstdint>

namespace Orvel {

enum class ScopeSyncMode : int {
    free = 0,
    transient = 1,
    beatTime = 2,
    pitch = 3,
    frequency = 4,
    time = 5,
};

enum class ScopeChannelMode : int {
    leftAndRight = 0,
    leftOnly = 1,
    rightOnly = 2,
    monoMix = 3,
    max = 4,
};

/// One period of the scope.
struct SyncPeriod {
    double milliseconds = 5000;
    bool synchronised = false; ///< the picture starts over at the period's end
};

/// The values of the scope's timing parameters, and the period that follows from them.
/// Threads: any may set and read; the period is worked out where it is needed.
class ScopeTiming {
  public:
    Core::Relaxed<int> channelMode{0};
    Core::Relaxed<int> syncMode{0};
    Core::Relaxed<int> beatIndex{3};
    Core::Relaxed<float> note{60.0F}; ///< 9 is 13.75 Hz, twelve to the octave
    Core::Relaxed<float> frequencyHz{50.0F};
    Core::Relaxed<float> timeMs{5000.0F};
    Core::Relaxed<int> multiplier{4};
    Core::Relaxed<float> phaseOffsetMs{0.0F}; ///< moved by the scope's sync marker

    ScopeSyncMode mode() const { return static_cast<ScopeSyncMode>(syncMode.load()); }

    /// At least 1 ms; in the pitch mode a whole multiple of the note's period, so that high notes
    /// stand still as well.
    SyncPeriod period(double tempo) const noexcept;

    /// Whether the mode has boundaries on a time grid (all but free and transient).
    bool hasGrid() const noexcept { return mode() >= ScopeSyncMode::beatTime; }

    /// Samples from `position` to the next boundary, below one sample counted as 0.
    /// `periodMs` comes from `period`. Exact to the sample up to 2^53 samples.
    std::int64_t distanceToBoundary(double periodMs,
                                    double sampleRate,
                                    std::int64_t position) const noexcept ORVEL_NONBLOCKING;
};

} // namespace Orvel
