// Things that want to be called in intervals, and the one list of them.
#pragma once

#include "core/CallList.h"

#include <atomic>
#include <cstdint>

namespace Sorel {

/// Gets `onTimer` between start and stop; its destructor stops.
/// Threads: start and stop anywhere, onTimer on the GUI thread.
class CTimerObject {
  public:
    CTimerObject() = default;
    CTimerObject(const CTimerObject&) = delete;
    CTimerObject& operator=(const CTimerObject&) = delete;
    virtual ~CTimerObject();
    /// `elapsedMilliseconds` since the last call, or since the start.
    virtual void onTimer(std::int64_t elapsedMilliseconds) = 0;

    /// Again with another interval: it changes.
    void startTimer(int intervalMs);
    /// After this no call runs or will run, except the one that stops itself. A class whose
    /// onTimer uses its own members must stop in its own destructor.
    void stopTimer();
};

/// All running timers of the process. Whoever drives the editors pumps it; it has no thread.
class CTimerRegistry {
  public:
    static CTimerRegistry& instance();

    void start(CTimerObject* object, int intervalMs);
    void stop(CTimerObject* object);
    /// Calls what is due at `nowMs`, each object at most once however late the call comes.
    /// Threads: GUI thread. Returns at once while another thread changes the list, and when it is
    /// called from inside onTimer.
    void pump(std::uint64_t nowMs);
    int count();

  private:
    struct Record {
        CTimerObject* object;
        std::int64_t intervalMs;
        std::int64_t countdownMs;
        std::uint64_t lastCall;
    };

    Core::Threads::CallList<Record> records_;
    std::atomic<std::uint64_t> lastPump_{0};
};

} // namespace Sorel
