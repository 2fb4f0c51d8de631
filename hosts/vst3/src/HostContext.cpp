// One context and those who wait for it.
#include "HostContext.h"

#include "core/CallList.h"

#include <mutex>
#include <utility>

namespace Vardo::HostContext {

using Steinberg::FUnknown;
using Steinberg::IPtr;

namespace {
struct Shared {
    Shared() = default;
    // Still here when the module goes: maybe the host's object is not.
    ~Shared() { context.take(); }
    Shared(const Shared&) = delete;
    Shared& operator=(const Shared&) = delete;

    std::mutex lock;
    IPtr<FUnknown> context;
    Core::Threads::CallList<HostContextListener*> listeners;
};
Shared& shared() {
    static Shared shared;
    return shared;
}
} // namespace

void set(FUnknown* context) {
    IPtr<FUnknown> before(context); // and, after the exchange, the one that goes
    {
        const std::lock_guard guard(shared().lock);
        std::swap(before, shared().context);
    }
    if (context == nullptr) return;
    shared().listeners.callEach([](const HostContextListener*) { return true; },
                                [](HostContextListener* each) { each->hostContextCame(); });
}

IPtr<FUnknown> get() {
    const std::lock_guard guard(shared().lock);
    return shared().context;
}

void add(HostContextListener* listener) { shared().listeners.add(listener); }

void remove(HostContextListener* listener) {
    shared().listeners.removeIf(
        [listener](const HostContextListener* each) { return each == listener; });
}

} // namespace Vardo::HostContext
