#include "core/CriticalSection.h"

#include "Pause.h"

namespace Core::Threads {

namespace {
// Long enough to outlast the exchange of two pointers, short enough not to burn a slice of audio.
constexpr int kSpinCount = 1024;
} // namespace

void CriticalSection::enter() {
    for (int spin = 0; spin < kSpinCount; ++spin) {
        if (mutex_.try_lock()) return;
        pauseCpu();
    }
    mutex_.lock();
}

void CriticalSection::leave() { mutex_.unlock(); }

bool CriticalSection::tryEnter() { return mutex_.try_lock(); }

} // namespace Core::Threads
