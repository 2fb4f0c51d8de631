#include "Kernels.h"

namespace Orvel {

#if defined(__x86_64__)
extern const Kernels kAvx2Kernels;

const Kernels* avx2Kernels() noexcept {
    return __builtin_cpu_supports("avx2") ? &kAvx2Kernels : nullptr;
}
#else
const Kernels* avx2Kernels() noexcept { return nullptr; }
#endif

namespace {
const Kernels& best() {
    const Kernels* const wide = avx2Kernels();
    return wide != nullptr ? *wide : kBaselineKernels;
}
const Kernels& chosen = best(); // at load, so that no thread ever waits for the choice
} // namespace

const Kernels& kernels() noexcept { return chosen; }

} // namespace Orvel
