// The parameters that a host sees, by the index it knows them by.
#pragma once

#include "core/Relaxed.h"

#include <atomic>
#include <memory>
#include <thread>

namespace Vardo {

class IPluginBase;
class IPluginParameter;

/// Built once, then fixed: the automatable parameters in the plug-in's order. Each knows its place
/// here as its host index; the others have host index -1.
/// Threads: everything but `build` may be called on any.
class ParameterMap {
  public:
    /// Construction only.
    void build(IPluginBase& plugin);

    int size() const noexcept { return size_; }
    /// Null when out of range.
    IPluginParameter* parameter(int index) const noexcept;

    /// Between these the user holds the parameter's control. Out of range: nothing.
    void setGesture(int index, bool open) noexcept;
    bool hasGesture(int index) const noexcept;

    /// Marks one parameter as being set by the host on this thread, for a scope. What the plug-in
    /// says of the parameter meanwhile, on this thread, is an echo of the host's own call.
    class HostCall {
      public:
        HostCall(ParameterMap& map, int index) noexcept;
        ~HostCall();
        HostCall(const HostCall&) = delete;
        HostCall& operator=(const HostCall&) = delete;

      private:
        std::atomic<std::thread::id>* mark_;
        bool outer_ = true; // a host that sets it again from within leaves the mark to the first
    };
    bool isHostCall(int index) const noexcept;

  private:
    struct Entry {
        Core::Relaxed<bool> gesture{false};
        IPluginParameter* parameter = nullptr;
        std::atomic<std::thread::id> hostCall{}; // the last thread in a HostCall; none: no thread
    };

    bool contains(int index) const noexcept { return index >= 0 && index < size_; }

    std::unique_ptr<Entry[]> entries_;
    int size_ = 0;
};

} // namespace Vardo
