// When pictures are made, and when a clock without a device plays.
#pragma once

#include "frame/IdleList.h"

#include <chrono>

namespace Standalone {

/// Pictures stand on multiples of their period of the steady clock, silent playing half-way between
/// them: so each picture finds exactly one block more than the one before it, and what scrolls
/// moves evenly.
struct PictureBeat {
    using Clock = std::chrono::steady_clock;
    static constexpr std::chrono::milliseconds kPeriod{Vardo::IdleList::kDefaultPeriodMs};
    /// While nothing moves, one look in so many periods is enough.
    static constexpr int kPeriodsWhenStill = 3;

    /// The first picture after `now`.
    static Clock::time_point next(Clock::time_point now, int periods = 1) {
        // Timers count whole milliseconds: a wake-up that is a little late does not seem to be a
        // whole one late.
        constexpr std::chrono::microseconds off{500};
        const auto every = kPeriod * periods;
        return now - (now.time_since_epoch() - off) % every + every;
    }
    static Clock::time_point nextSilentBlock(Clock::time_point now) {
        return next(now + kPeriod / 2) - kPeriod / 2;
    }
};

} // namespace Standalone
