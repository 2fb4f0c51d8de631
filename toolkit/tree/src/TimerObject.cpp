#include "tree/TimerObject.h"

#include "platform/Frame.h"

#include <algorithm>

namespace Sorel {

CTimerObject::~CTimerObject() { CTimerRegistry::instance().stop(this); }

void CTimerObject::startTimer(int intervalMs) {
    CTimerRegistry::instance().start(this, intervalMs);
}

void CTimerObject::stopTimer() { CTimerRegistry::instance().stop(this); }

CTimerRegistry& CTimerRegistry::instance() {
    static CTimerRegistry registry;
    return registry;
}

void CTimerRegistry::start(CTimerObject* object, int intervalMs) {
    const std::uint64_t now = hasPlatform() ? platform().ticks() : 0;
    const std::int64_t interval = std::max(intervalMs, 1);
    const bool known = records_.change(
        [object](const Record& record) { return record.object == object; },
        [interval](Record& record) { record.intervalMs = record.countdownMs = interval; });
    if (known) return;
    if (records_.size() == 0) lastPump_ = now;
    // Time that passed before the start does not count.
    const std::uint64_t last = lastPump_;
    const auto waited = static_cast<std::int64_t>(now > last ? now - last : 0);
    records_.add({object, interval, interval + waited, now});
}

void CTimerRegistry::stop(CTimerObject* object) {
    records_.removeIf([object](const Record& record) { return record.object == object; });
}

void CTimerRegistry::pump(std::uint64_t nowMs) {
    const std::uint64_t last = lastPump_;
    const auto elapsed = static_cast<std::int64_t>(nowMs > last ? nowMs - last : 0);
    const auto isDue = [elapsed](Record& record) {
        record.countdownMs -= elapsed;
        if (record.countdownMs > 0) return false;
        // Keeps the beat, but does not make up for calls that were missed.
        record.countdownMs = std::max<std::int64_t>(record.countdownMs + record.intervalMs, 1);
        return true;
    };
    const auto call = [nowMs](Record& record) {
        const std::uint64_t since = nowMs - std::min(nowMs, record.lastCall);
        record.lastCall = nowMs;
        record.object->onTimer(static_cast<std::int64_t>(since));
    };
    if (records_.callEach(isDue, call)) lastPump_ = nowMs;
}

int CTimerRegistry::count() { return static_cast<int>(records_.size()); }

} // namespace Sorel
