#include "core/RealtimeGate.h"

#include <chrono>
#include <thread>

namespace Core::Threads {

void RealtimeGate::enter() noexcept {
    using namespace std::chrono_literals;
    for (int attempt = 0; !tryEnter(); ++attempt) {
        if (attempt < 16)
            std::this_thread::yield();
        else
            std::this_thread::sleep_for(20us);
    }
}

} // namespace Core::Threads
