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
    const ScopedLock lock(timerLock_);
    stopTimer();
    timer_ = std::move(timer);
    if (editors_.size() > 0) startTimer();
}

void IdleList::add(IPluginEditor* editor) {
    if (editor == nullptr) return;
    editors_.add(editor);
    const ScopedLock lock(timerLock_);
    startTimer();
}

void IdleList::remove(IPluginEditor* editor) {
    editors_.removeIf([editor](const IPluginEditor* each) { return each == editor; });
}

void IdleList::setPeriod(int ms) {
    const ScopedLock lock(timerLock_);
    ms = std::max(ms, 1);
    if (ms == periodMs_) return;
    periodMs_ = ms;
    if (!timerRuns_) return;
    stopTimer();
    startTimer();
}

void IdleList::tick() {
    editors_.callEach([](const IPluginEditor*) { return true; },
                      [](IPluginEditor* editor) {
                          if (editor->isOpen()) editor->idle();
                      });
    if (editors_.size() > 0 || !timerLock_.tryEnter()) return;
    if (editors_.size() == 0) stopTimer();
    timerLock_.leave();
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
