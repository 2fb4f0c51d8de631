// The platform in use.
#include "platform/Frame.h"

#include <cstdio>
#include <cstdlib>

namespace Sorel {

namespace {
IPlatform* current = nullptr;
}

IPlatform& platform() {
    if (current == nullptr) {
        std::fputs("No platform was set before the first window: call setPlatform.\n", stderr);
        std::abort();
    }
    return *current;
}

void setPlatform(IPlatform* newPlatform) { current = newPlatform; }

bool hasPlatform() { return current != nullptr; }

} // namespace Sorel
