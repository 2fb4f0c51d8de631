#include "core/ThreadEvent.h"

namespace Core::Threads {

void ThreadEvent::set() noexcept {
    signalled_.store(1, std::memory_order_release);
    signalled_.notify_all();
}

void ThreadEvent::reset() noexcept {
    // An exchange, not a store: what was written before the set that we clear is visible now.
    signalled_.exchange(0, std::memory_order_acq_rel);
}

void ThreadEvent::wait() noexcept {
    while (signalled_.load(std::memory_order_acquire) == 0)
        signalled_.wait(0, std::memory_order_acquire);
    if (mode_ == Reset::automatic) reset();
}

} // namespace Core::Threads
