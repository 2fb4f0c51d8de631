// The way into a plug-in's process and set-up calls, and who is in.
#pragma once

#include "core/RealtimeGate.h"
#include "core/Relaxed.h"

#include <thread>

namespace Vardo {

/// A gate that remembers its thread: a host that calls back in while the plug-in asks it something
/// finds itself inside already, and what needs the gate is left out then.
class PluginGate {
  public:
    /// For a scope: inside, or turned away.
    class Inside {
      public:
        ~Inside() {
            if (gate_ != nullptr) gate_->leave();
        }
        Inside(const Inside&) = delete;
        Inside& operator=(const Inside&) = delete;
        explicit operator bool() const noexcept { return gate_ != nullptr; }

      private:
        friend class PluginGate;
        explicit Inside(PluginGate* gate) noexcept
            : gate_(gate) {
            if (gate_ != nullptr) gate_->thread_ = std::this_thread::get_id();
        }
        PluginGate* gate_;
    };

    /// Audio thread: turned away where another, or this one, is in. Never waits.
    [[nodiscard]] Inside tryEnter() noexcept ORVEL_NONBLOCKING {
        return Inside(gate_.tryEnter() ? this : nullptr);
    }
    /// Other threads: waits; turned away only where this thread is in already.
    [[nodiscard]] Inside enter() noexcept {
        if (isHeldHere()) return Inside(nullptr);
        gate_.enter();
        return Inside(this);
    }
    bool isHeldHere() const noexcept { return thread_.load() == std::this_thread::get_id(); }

  private:
    void leave() noexcept {
        thread_ = std::thread::id{};
        gate_.leave();
    }

    Core::Threads::RealtimeGate gate_;
    Core::Relaxed<std::thread::id> thread_; // inside, none when it is free
};

} // namespace Vardo
