// The host's event loop: calls us when time has passed, or when events wait.
#pragma once

#include "pluginterfaces/base/funknown.h"
#include "pluginterfaces/base/smartpointer.h"

namespace Vardo {

/// Hears of a turn of the host's loop. Main thread.
class HostLoopListener {
  public:
    virtual void onHostTimer() = 0;
    virtual void onHostEvents() = 0;

  protected:
    ~HostLoopListener() = default;
};

/// A place in the host's loop, given back exactly once: by `stop` or at the end of its life. Where
/// the platform has a loop of its own for all (Windows), this never starts and nobody needs it.
/// Threads: the host's main thread.
class HostLoop {
  public:
    static constexpr int kNoDescriptor = -1;

    explicit HostLoop(HostLoopListener& listener);
    ~HostLoop();
    HostLoop(const HostLoop&) = delete;
    HostLoop& operator=(const HostLoop&) = delete;

    /// Takes a place in the loop of `giver` (any object of the host's, or null) with a timer of
    /// `periodMs`. Gives whether it runs; a running one stays where it is.
    bool start(Steinberg::FUnknown* giver, int periodMs);
    void stop() noexcept;
    bool isRunning() const noexcept { return handler_ != nullptr; }
    /// Has the loop watch this file descriptor, and no other, or none.
    void watch(int descriptor);

  private:
    class Handler;
    HostLoopListener& listener_;
    Steinberg::IPtr<Handler> handler_;
};

/// What a host calls the window that an editor opens in.
const char* platformWindowType() noexcept;

} // namespace Vardo
