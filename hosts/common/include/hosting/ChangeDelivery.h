// Gives a plug-in the moments at which it may call the host back.
#pragma once

#include "core/Relaxed.h"
#include "frame/PluginBase.h"

#include <thread>

namespace Vardo {

/// Calls `IPluginBase::onIdle` on the host's main thread only, and never from inside itself.
/// Threads: any.
class ChangeDelivery {
  public:
    /// This thread is the host's main thread.
    void claimThread() noexcept { mainThread_ = std::this_thread::get_id(); }
    bool isOnMainThread() const noexcept {
        return mainThread_.load() == std::this_thread::get_id();
    }
    /// Does nothing on other threads, and without a plug-in. Lets through what the plug-in throws.
    void deliver(IPluginBase* plugin) {
        if (plugin == nullptr || !isOnMainThread() || delivering_.exchange(true)) return;
        struct Done {
            Core::Relaxed<bool>& delivering;
            ~Done() { delivering.exchange(false); }
        } const done{delivering_};
        plugin->onIdle();
    }

  private:
    Core::Relaxed<std::thread::id> mainThread_;
    Core::Relaxed<bool> delivering_{false};
};

} // namespace Vardo
