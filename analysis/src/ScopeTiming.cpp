#include "analysis/ScopeTiming.h"

#include "frame/BeatTimeList.h"

#include <algorithm>
#include <cmath>

namespace Orvel {

namespace {
constexpr double kShortestMs = 1.0;
constexpr double kLowestNoteHz = 13.75; // five octaves below 440 Hz
constexpr int kLowestNote = 9;          // its number

constexpr double kRounding = 1e-15; // a few last bits of the position in periods

double notePeriodMs(double note) {
    return 1000.0 / (kLowestNoteHz * std::exp2((note - kLowestNote) / 12));
}
} // namespace

SyncPeriod ScopeTiming::period(double tempo) const noexcept {
    const double times = std::max(1, multiplier.load());
    double ms = 5000;
    switch (mode()) {
    case ScopeSyncMode::free:
    case ScopeSyncMode::transient:
    case ScopeSyncMode::time:
        ms = double{timeMs};
        break;
    case ScopeSyncMode::beatTime:
        ms = Vardo::BeatTimeList::straight().getBeatLength(beatIndex, tempo) * times;
        break;
    case ScopeSyncMode::pitch: {
        const double one = notePeriodMs(double{note});
        ms = one * std::max(times, std::ceil(kShortestMs / one));
        break;
    }
    case ScopeSyncMode::frequency:
        ms = 1000.0 / double{frequencyHz} * times;
        break;
    }
    return {std::max(kShortestMs, ms), mode() != ScopeSyncMode::free};
}

std::int64_t ScopeTiming::distanceToBoundary(double periodMs,
                                             double sampleRate,
                                             std::int64_t position) const noexcept {
    const double samplesPerMs = sampleRate * 0.001;
    const double period = std::max(1.0, periodMs * samplesPerMs);
    const double shifted = std::max(
        0.0, std::trunc(samplesPerMs * double{phaseOffsetMs} + static_cast<double>(position)));
    // Of a period that has no exact double, whole multiples are off by some last bits: a boundary
    // on a whole sample is that sample, not the one before.
    const double rounding = kRounding * (shifted + period);
    return static_cast<std::int64_t>(period - std::fmod(shifted, period) + rounding);
}

} // namespace Orvel
