#include "frame/VardoCallback.h"

namespace Vardo {

const char* interfaceName(int kind) {
    static constexpr const char* kNames[] = {"-", "VST2", "VST3", "RTAS", "AU", "AAX", "Vardo"};
    constexpr int kCount = sizeof kNames / sizeof kNames[0];
    return kind < 0 || kind >= kCount ? "" : kNames[kind];
}

} // namespace Vardo
