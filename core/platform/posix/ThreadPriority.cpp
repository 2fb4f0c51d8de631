#include "ThreadPriority.h"

#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace Core::Threads {

void raiseOwnPriority(int steps) noexcept {
    if (steps == 0) return;
    // On Linux the nice value belongs to the thread. Without the privilege this does nothing.
    const auto self = static_cast<id_t>(syscall(SYS_gettid));
    (void)setpriority(PRIO_PROCESS, self, -5 * steps);
}

} // namespace Core::Threads
