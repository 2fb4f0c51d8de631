// A worker that sleeps until it is signalled, works once, and sleeps again.
#pragma once

#include "core/CriticalSection.h"
#include "core/RealTime.h"
#include "core/ThreadEvent.h"

#include <atomic>
#include <thread>

namespace Core::Threads {

using ThreadRoutine = void (*)(void* context);

/// Starts a thread. A `priority` of 0 leaves the default; 1 asks for a little more than that,
/// which the system may refuse without harm.
/// Fails: gives a thread that is not joinable when none could be started.
std::thread createThread(ThreadRoutine routine, void* context, int priority);

/// What a persistent thread does when it wakes.
class IPersistentThreadCallback {
  public:
    virtual ~IPersistentThreadCallback() = default;
    virtual void threadFunction(int argument) = 0;
};

/// One thread that lives as long as this object and runs `threadFunction` once per wake-up.
/// Two signals during one piece of work give one further wake-up, so the callback must always
/// work on whatever is newest.
/// Threads: `signal` may be called on the audio thread; the rest belongs to the owner.
class CPersistentThread {
  public:
    /// Starts the thread at once, a little above normal priority. `callback` is not owned and must
    /// outlive this object.
    explicit CPersistentThread(IPersistentThreadCallback* callback);
    /// Stops as `stop` does.
    ~CPersistentThread();
    CPersistentThread(const CPersistentThread&) = delete;
    CPersistentThread& operator=(const CPersistentThread&) = delete;

    /// Wakes the worker. Never waits, takes no lock; a signal before the worker first waits or
    /// while it works is kept.
    void signal(int argument) noexcept ORVEL_NONBLOCKING;

    /// Lets a piece of work in progress end, ends the thread and waits for that. No callback runs
    /// afterwards. A second call does nothing.
    void stop();

    /// False when the system gave no thread: signals then go unheard.
    bool isRunning() const noexcept { return thread_.joinable(); }

  private:
    void run();

    IPersistentThreadCallback* callback_;
    ThreadEvent event_;
    std::atomic<int> argument_{0};
    std::atomic<bool> stopping_{false};
    CriticalSection lifetime_; // held by the routine while it lives, so that stop() sees its end
    std::thread thread_;       // last: the routine uses everything above
};

} // namespace Core::Threads
