#include "frame/IdleList.h"

#include "frame/PluginEditor.h"

#include <algorithm>
#include <utility>

namespace Vardo {

using Core::Threads::ScopedLock;

IdleList& IdleList::instance() {
    static IdleList list;
    return list;
}

IdleList::~IdleList() { stopTimer(); }

void IdleList::setTimer(std::unique_ptr<IIdleTimer> timer) {
    const ScopedLock lock(lock_);
    stopTimer();
    timer_ = std::move(timer);
    if (!entries_.empty()) startTimer();
}

void IdleList::add(IPluginEditor* editor) {
    if (editor == nullptr) return;
    const ScopedLock lock(lock_);
    entries_.push_back({editor, false});
    startTimer();
}

void IdleList::remove(IPluginEditor* editor) {
    // Waits for a tick on another thread. The entry stays for the next tick to take out, so that
    // nothing is pulled from under a tick that called us.
    const ScopedLock lock(lock_);
    for (Entry& entry : entries_)
        if (entry.editor == editor) entry.removed = true;
}

void IdleList::setPeriod(int ms) {
    const ScopedLock lock(lock_);
    ms = std::max(ms, 1);
    if (ms == periodMs_) return;
    periodMs_ = ms;
    if (!timerRuns_) return;
    stopTimer();
    startTimer();
}

void IdleList::tick() {
    if (!lock_.tryEnter()) return;
    if (!ticking_) {
        ticking_ = true;
        std::erase_if(entries_, [](const Entry& entry) { return entry.removed; });
        if (entries_.empty()) stopTimer();

        // By index, and looked up anew each time: idle may add entries and mark any of them.
        // Entries added during this tick wait for the next.
        const std::size_t count = entries_.size();
        for (std::size_t i = 0; i < count; ++i) {
            IPluginEditor* editor = entries_[i].editor;
            if (!entries_[i].removed && editor->isOpen()) editor->idle();
        }
        ticking_ = false;
    }
    lock_.leave();
}

void IdleList::startTimer() {
    if (timerRuns_ || timer_ == nullptr) return;
    timer_->start(periodMs_);
    timerRuns_ = true;
}

void IdleList::stopTimer() {
    if (!timerRuns_) return;
    timer_->stop();
    timerRuns_ = false;
}

} // namespace Vardo
