#include "tree/TimerObject.h"

#include "platform/Frame.h"

#include <algorithm>

namespace Sorel {

using Core::Threads::ScopedLock;

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
    const ScopedLock guard(lock_);
    for (const auto& record : records_) {
        if (record->object != object || record->removed) continue;
        record->intervalMs = record->countdownMs = interval;
        return;
    }
    if (records_.empty()) lastPump_ = now;
    // Time that passed before the start does not count.
    const auto waited = static_cast<std::int64_t>(now > lastPump_ ? now - lastPump_ : 0);
    records_.push_back(std::make_shared<Record>(
        Record{object, interval, interval + waited, now, {}, false, false}));
}

void CTimerRegistry::stop(CTimerObject* object) {
    for (;;) {
        {
            const ScopedLock guard(lock_);
            const auto place =
                std::find_if(records_.begin(), records_.end(), [object](const auto& record) {
                    return record->object == object && !record->removed;
                });
            if (place == records_.end()) return;
            Record& record = **place;
            if (!record.isBusy || record.busy == std::this_thread::get_id()) {
                record.removed = true;
                records_.erase(place);
                return;
            }
        }
        std::this_thread::yield(); // its call runs on the GUI thread: wait for that one alone
    }
}

void CTimerRegistry::pump(std::uint64_t nowMs) {
    if (!lock_.tryEnter()) return;
    if (pumping_ || records_.empty()) {
        if (!pumping_) lastPump_ = nowMs;
        lock_.leave();
        return;
    }
    pumping_ = true;
    const auto elapsed = static_cast<std::int64_t>(nowMs > lastPump_ ? nowMs - lastPump_ : 0);
    lastPump_ = nowMs;
    std::vector<std::shared_ptr<Record>> due;
    for (const auto& record : records_) {
        record->countdownMs -= elapsed;
        if (record->countdownMs > 0) continue;
        // Keeps the beat, but does not make up for calls that were missed.
        record->countdownMs += record->intervalMs;
        record->countdownMs = std::max<std::int64_t>(record->countdownMs, 1);
        due.push_back(record);
    }
    for (const auto& record : due) {
        if (record->removed) continue;
        const auto since = static_cast<std::int64_t>(nowMs - std::min(nowMs, record->lastCall));
        record->lastCall = nowMs;
        record->busy = std::this_thread::get_id();
        record->isBusy = true;
        lock_.leave();
        record->object->onTimer(since);
        lock_.enter();
        record->isBusy = false;
    }
    pumping_ = false;
    lock_.leave();
}

int CTimerRegistry::count() {
    const ScopedLock guard(lock_);
    return static_cast<int>(records_.size());
}

} // namespace Sorel
