// Keeps the audio thread out of something that the main thread is rebuilding, without ever
// making the audio thread wait.
#pragma once

#include "core/RealTime.h"

#include <atomic>

namespace Core::Threads {

/// A door with one place. The audio thread only tries it and goes another way when it is shut;
/// the main thread waits for it.
class RealtimeGate {
  public:
    RealtimeGate() = default;
    RealtimeGate(const RealtimeGate&) = delete;
    RealtimeGate& operator=(const RealtimeGate&) = delete;

    /// Audio thread: true when inside. Never waits; one atomic exchange. A thread that waits in
    /// `enter` goes first, so that a busy audio thread cannot keep it out for long.
    bool tryEnter() noexcept ORVEL_NONBLOCKING {
        return !wanted_.load(std::memory_order_relaxed) && take();
    }
    void leave() noexcept ORVEL_NONBLOCKING { taken_.store(false, std::memory_order_release); }

    /// Any other thread: waits, by yielding and short sleeps, until inside. The audio thread
    /// never makes a system call for the sake of a waiter here, which is why this is no mutex.
    void enter() noexcept;

  private:
    bool take() noexcept { return !taken_.exchange(true, std::memory_order_acquire); }

    std::atomic<bool> taken_{false};
    std::atomic<bool> wanted_{false};
};

/// Holds a gate for a scope on a thread that may wait.
class GateHold {
  public:
    explicit GateHold(RealtimeGate& gate)
        : gate_(gate) {
        gate_.enter();
    }
    ~GateHold() { gate_.leave(); }
    GateHold(const GateHold&) = delete;
    GateHold& operator=(const GateHold&) = delete;

  private:
    RealtimeGate& gate_;
};

} // namespace Core::Threads
