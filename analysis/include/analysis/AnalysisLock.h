// The one lock of a plug-in's analysis, and whether a chunk is still on its way through it.
#pragma once

#include "core/CriticalSection.h"

#include <atomic>
#include <cstdint>

namespace Orvel {

/// Guards the exchange of the two records, the analysis itself and all re-dimensioning.
///
/// A record that the audio thread handed over is in flight until the worker has analysed it. All
/// who want to exchange records or change what the analysis uses enter when nothing is in flight:
/// so no chunk is ever overwritten or dropped, and a worker slower than real time makes the next
/// exchange wait.
class AnalysisLock {
  public:
    /// Waits until nothing is in flight, and returns holding the lock. Makes no system call while
    /// nobody else is inside.
    void enterIdle();
    /// Takes the lock whether or not something is in flight: for the worker.
    void enter() { section_.enter(); }
    void leave() { section_.leave(); }

    /// Holding the lock, after an exchange: the read record now waits for the worker.
    void handToWorker() { inFlight_.store(1, std::memory_order_relaxed); }
    /// Holding the lock: whether a record waits for the worker.
    bool isInFlight() const { return inFlight_.load(std::memory_order_relaxed) != 0; }
    /// The worker, after the analysis: leaves the lock, and wakes whoever waits for that.
    void leaveAnalysed();

  private:
    Core::Threads::CriticalSection section_;
    std::atomic<std::uint32_t> inFlight_{0}; // changes under the lock; waited for outside it
};

/// Holds the lock for a scope, with nothing in flight.
class IdleAnalysis {
  public:
    explicit IdleAnalysis(AnalysisLock& lock)
        : lock_(lock) {
        lock_.enterIdle();
    }
    ~IdleAnalysis() { lock_.leave(); }
    IdleAnalysis(const IdleAnalysis&) = delete;
    IdleAnalysis& operator=(const IdleAnalysis&) = delete;

  private:
    AnalysisLock& lock_;
};

} // namespace Orvel
