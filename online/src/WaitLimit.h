// How long something may be waited for: until a moment, or until somebody says stop.
#pragma once

#include <algorithm>
#include <atomic>
#include <chrono>

namespace Dorna {

class WaitLimit {
  public:
    using Clock = std::chrono::steady_clock;

    /// `stop` may be set by any thread at any time.
    WaitLimit(const std::atomic<bool>& stop, Clock::duration atMost)
        : stop_(stop)
        , deadline_(Clock::now() + atMost) {}

    bool isOver() const { return stop_.load() || Clock::now() >= deadline_; }
    /// The same, but ending sooner when `atMost` passes first.
    WaitLimit within(Clock::duration atMost) const {
        WaitLimit sooner(stop_, atMost);
        sooner.deadline_ = std::min(sooner.deadline_, deadline_);
        return sooner;
    }
    /// The system is waited for in pieces this long, so that a stop is seen after at most one of
    /// them. That costs ten wake-ups a second during a transfer, and no descriptor to be woken by.
    std::chrono::milliseconds slice() const {
        constexpr std::chrono::milliseconds kLongest{100};
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline_ - Clock::now());
        return std::clamp(left, std::chrono::milliseconds{0}, kLongest);
    }

  private:
    const std::atomic<bool>& stop_;
    Clock::time_point deadline_;
};

} // namespace Dorna
