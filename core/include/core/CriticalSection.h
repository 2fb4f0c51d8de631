// A lock that its own thread may take again, and that spins for a moment before it sleeps.
#pragma once

#include <mutex>

namespace Core::Threads {

/// The one kind of lock in the system. Re-entry by the thread that holds it is allowed.
/// Threads: any. `enter` and `leave` make no system call while nobody else wants the lock.
class CriticalSection {
  public:
    CriticalSection() = default;
    CriticalSection(const CriticalSection&) = delete;
    CriticalSection& operator=(const CriticalSection&) = delete;

    /// Waits until the lock is ours: a short spin first, since most holders leave within
    /// microseconds, then asleep.
    void enter();
    void leave();
    /// True when the lock was taken. Never waits.
    bool tryEnter();

  private:
    std::recursive_mutex mutex_;
};

/// Holds a critical section for a scope.
class ScopedLock {
  public:
    explicit ScopedLock(CriticalSection& section)
        : section_(section) {
        section_.enter();
    }
    ~ScopedLock() { section_.leave(); }
    ScopedLock(const ScopedLock&) = delete;
    ScopedLock& operator=(const ScopedLock&) = delete;

  private:
    CriticalSection& section_;
};

} // namespace Core::Threads
