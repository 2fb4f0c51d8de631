// What the host told the module's factory about itself, for all effects of the module.
#pragma once

#include "pluginterfaces/base/funknown.h"
#include "pluginterfaces/base/smartpointer.h"

namespace Vardo {

/// Hears of a host context that comes after the effect was made.
class HostContextListener {
  public:
    virtual void hostContextCame() = 0;

  protected:
    ~HostContextListener() = default;
};

/// Threads: any; the listeners hear on the thread of `set`, in practice the host's main thread.
namespace HostContext {
/// A reference is held. Null: the host takes it back.
void set(Steinberg::FUnknown* context);
/// May be null.
Steinberg::IPtr<Steinberg::FUnknown> get();

void add(HostContextListener* listener);
/// Once it has returned, `listener` is not called again.
void remove(HostContextListener* listener);
} // namespace HostContext

} // namespace Vardo
