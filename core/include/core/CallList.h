// A list of things that are called one after the other, and may go at any moment.
#pragma once

#include "core/CriticalSection.h"

#include <algorithm>
#include <memory>
#include <thread>
#include <utility>
#include <vector>

namespace Core::Threads {

/// Each value is called with the list unlocked and its own entry marked busy, so a call may add and
/// remove anything. Threads: any. After `removeIf` has returned, no call of a removed value runs or
/// will run, except the one that called it; another thread waits for that one call alone.
template <class Value>
class CallList {
  public:
    void add(Value value) {
        const ScopedLock guard(lock_);
        entries_.push_back(std::make_shared<Entry>(Entry{std::move(value), {}, false, false}));
    }
    template <class Predicate>
    void removeIf(Predicate predicate) {
        while (!tryRemove(predicate))
            std::this_thread::yield();
    }
    /// Calls `function` for each entry of the moment, in order; `true` from `wanted`, which is
    /// asked under the lock, says which. Does nothing while another thread has the lock, and when
    /// it is called from inside a call: the next round is never far. False then.
    template <class Wanted, class Function>
    bool callEach(Wanted wanted, Function function) {
        if (!lock_.tryEnter()) return false;
        const bool nested = std::exchange(calling_, true);
        if (!nested) {
            const std::vector<std::shared_ptr<Entry>> round = entries_;
            for (const auto& entry : round) {
                if (entry->removed || !wanted(entry->value)) continue;
                entry->busyOn = std::this_thread::get_id();
                entry->busy = true;
                lock_.leave();
                function(entry->value);
                lock_.enter();
                entry->busy = false;
            }
            calling_ = false;
        }
        lock_.leave();
        return !nested;
    }
    /// The first that fits, with the list locked around `use`; false when there is none.
    template <class Predicate, class Use>
    bool change(Predicate predicate, Use use) {
        const ScopedLock guard(lock_);
        for (const auto& entry : entries_) {
            if (!predicate(entry->value)) continue;
            use(entry->value);
            return true;
        }
        return false;
    }
    std::size_t size() {
        const ScopedLock guard(lock_);
        return entries_.size();
    }

  private:
    struct Entry {
        Value value;
        std::thread::id busyOn;
        bool busy;
        bool removed;
    };

    /// False while one that fits is being called on another thread.
    template <class Predicate>
    bool tryRemove(Predicate& predicate) {
        const ScopedLock guard(lock_);
        bool done = true;
        std::erase_if(entries_, [&](const std::shared_ptr<Entry>& entry) {
            if (!predicate(entry->value)) return false;
            if (entry->busy && entry->busyOn != std::this_thread::get_id()) {
                done = false;
                return false;
            }
            entry->removed = true;
            return true;
        });
        return done;
    }

    std::vector<std::shared_ptr<Entry>> entries_;
    CriticalSection lock_;
    bool calling_ = false;
};

} // namespace Core::Threads
