// Gives all open editors of the process their idle time from one timer.
#pragma once

#include "core/CallList.h"
#include "core/CriticalSection.h"

#include <memory>

namespace Vardo {

class IPluginEditor;

/// A timer of the platform that calls IdleList::tick on the GUI thread once per period.
class IIdleTimer {
  public:
    virtual ~IIdleTimer() = default;
    virtual void start(int periodMs) = 0;
    virtual void stop() = 0;
};

/// The editors that want idle time.
/// Threads: `tick` runs on the GUI thread; all else on any thread but the audio thread. After
/// `remove` has returned, no idle of that editor runs or will run, except the one that called it.
class IdleList {
  public:
    static constexpr int kDefaultPeriodMs = 25;

    /// The one list of the process.
    static IdleList& instance();

    IdleList() = default;
    /// Stops the timer first.
    ~IdleList();
    IdleList(const IdleList&) = delete;
    IdleList& operator=(const IdleList&) = delete;

    /// Installs the platform's timer, or takes it out with null: whoever drives the editors then
    /// calls `tick` itself. It starts at once if editors are waiting.
    void setTimer(std::unique_ptr<IIdleTimer> timer);

    /// `editor` is not owned, and stays until `remove`.
    void add(IPluginEditor* editor);
    void remove(IPluginEditor* editor);
    /// Milliseconds, at least 1.
    void setPeriod(int ms);
    int getPeriod() const { return periodMs_; }

    /// Gives every editor that is open one idle call. Does nothing while another thread changes
    /// the list, or when an editor calls it from inside its idle: the next tick is never far.
    /// Editors may add and remove themselves and each other from inside their idle. An empty list
    /// stops the timer until the next `add`.
    void tick();

  private:
    void startTimer();
    void stopTimer();

    Core::Threads::CallList<IPluginEditor*> editors_;
    Core::Threads::CriticalSection timerLock_; // guards what follows
    int periodMs_ = kDefaultPeriodMs;
    std::unique_ptr<IIdleTimer> timer_;
    bool timerRuns_ = false;
};

} // namespace Vardo
