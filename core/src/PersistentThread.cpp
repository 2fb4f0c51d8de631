#include "core/PersistentThread.h"

#include "ThreadPriority.h"

#include <system_error>

namespace Core::Threads {

std::thread createThread(ThreadRoutine routine, void* context, int priority) {
    try {
        return std::thread([routine, context, priority] {
            raiseOwnPriority(priority);
            routine(context);
        });
    } catch (const std::system_error&) {
        return {};
    }
}

CPersistentThread::CPersistentThread(IPersistentThreadCallback* callback)
    : callback_(callback)
    , thread_(
          createThread([](void* self) { static_cast<CPersistentThread*>(self)->run(); }, this, 1)) {
}

CPersistentThread::~CPersistentThread() { stop(); }

void CPersistentThread::signal(int argument) noexcept {
    argument_.store(argument, std::memory_order_relaxed);
    event_.set();
}

void CPersistentThread::stop() {
    if (!thread_.joinable()) return;
    stopping_.store(true, std::memory_order_relaxed);
    event_.set();
    thread_.join();
    const ScopedLock routineHasEnded(lifetime_);
}

void CPersistentThread::run() {
    const ScopedLock alive(lifetime_);
    for (;;) {
        event_.wait();
        // Reset before the work, so that a signal during the work wakes us again.
        event_.reset();
        if (stopping_.load(std::memory_order_relaxed)) return;
        callback_->threadFunction(argument_.load(std::memory_order_relaxed));
    }
}

} // namespace Core::Threads
