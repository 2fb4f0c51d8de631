// An event that threads sleep on until somebody sets it.
#pragma once

#include "core/RealTime.h"

#include <atomic>
#include <cstdint>

namespace Core::Threads {

/// Manual-reset event: once set it stays set, and lets every waiter through, until it is reset.
/// A `set` before anybody waits is therefore never lost.
/// Threads: any. `set` makes one system call when a thread sleeps on the event, else none.
class ThreadEvent {
  public:
    enum class Reset { manual, automatic };

    explicit ThreadEvent(Reset mode = Reset::manual) noexcept
        : mode_(mode) {}
    ThreadEvent(const ThreadEvent&) = delete;
    ThreadEvent& operator=(const ThreadEvent&) = delete;

    void set() noexcept ORVEL_NONBLOCKING;
    void reset() noexcept ORVEL_NONBLOCKING;
    /// Sleeps until the event is set, at once if it is. There is no time-out. An automatic event
    /// is clear again afterwards.
    void wait() noexcept;
    bool isSet() const noexcept { return signalled_.load(std::memory_order_acquire) != 0; }

  private:
    // 32 bits, because that is the width the kernel can sleep on without a helper lock.
    std::atomic<std::uint32_t> signalled_{0};
    Reset mode_;
};

} // namespace Core::Threads
