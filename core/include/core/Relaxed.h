// A plain number that one thread writes and others read, without a lock and without order.
#pragma once

#include <atomic>

namespace Core {

/// A value shared between threads where a late value is fine and a torn one is not.
/// Reads and writes are relaxed atomics, which cost on x86 what a plain variable costs.
/// Threads: any may read and write. No other memory is ordered by it: data that must be seen
/// together goes through the record exchange or a lock.
template <typename T>
class Relaxed {
  public:
    Relaxed() noexcept = default;
    Relaxed(T value) noexcept
        : value_(value) {} // NOLINT(google-explicit-constructor)
    Relaxed(const Relaxed& other) noexcept
        : value_(other.load()) {}
    Relaxed& operator=(const Relaxed& other) noexcept {
        store(other.load());
        return *this;
    }
    T operator=(T value) noexcept {
        store(value);
        return value;
    }
    operator T() const noexcept { return load(); } // NOLINT(google-explicit-constructor)

    T load() const noexcept { return value_.load(std::memory_order_relaxed); }
    void store(T value) noexcept { value_.store(value, std::memory_order_relaxed); }

    /// Stores `value` and gives what stood there. For requests that must be carried out once.
    T exchange(T value) noexcept { return value_.exchange(value, std::memory_order_acq_rel); }

  private:
    std::atomic<T> value_{};
    static_assert(std::atomic<T>::is_always_lock_free);
};

} // namespace Core
