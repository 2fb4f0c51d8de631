#include "core/RealtimeGate.h"

#include <chrono>
#include <thread>

namespace Core::Threads {

void RealtimeGate::enter() noexcept {
    using namespace std::chrono_literals;
    for (int attempt = 0; !take(); ++attempt) {
        // Said again in each round: another waiter may have come through and withdrawn it.
        wanted_.store(true, std::memory_order_relaxed);
        if (attempt < 16)
            std::this_thread::yield();
        else
            std::this_thread::sleep_for(20us);
    }
    wanted_.store(false, std::memory_order_relaxed);
}

} // namespace Core::Threads
