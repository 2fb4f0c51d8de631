#include "analysis/AnalysisLock.h"

namespace Orvel {

void AnalysisLock::enterIdle() {
    for (;;) {
        section_.enter();
        if (!isInFlight()) return;
        section_.leave();
        inFlight_.wait(1, std::memory_order_acquire);
    }
}

void AnalysisLock::leaveAnalysed() {
    inFlight_.store(0, std::memory_order_release);
    section_.leave();
    inFlight_.notify_all();
}

} // namespace Orvel
