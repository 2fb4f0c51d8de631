// Windows has one message loop for all; the editor's own timer lives there.
#include "HostLoop.h"

#include "base/source/fobject.h"
#include "pluginterfaces/gui/iplugview.h"

namespace Vardo {

class HostLoop::Handler final : public Steinberg::FObject {};

HostLoop::HostLoop(HostLoopListener& listener)
    : listener_(listener) {}

HostLoop::~HostLoop() = default;

bool HostLoop::start(Steinberg::FUnknown*, int) { return false; }

void HostLoop::stop() noexcept {}

void HostLoop::watch(int) {}

const char* platformWindowType() noexcept { return Steinberg::kPlatformTypeHWND; }

} // namespace Vardo
