#include "SpectrumKernels.h"

namespace Orvel {

#if defined(__x86_64__)
extern const SpectrumKernels kAvx2SpectrumKernels;

const SpectrumKernels* avx2SpectrumKernels() noexcept {
    return __builtin_cpu_supports("avx2") ? &kAvx2SpectrumKernels : nullptr;
}
#else
const SpectrumKernels* avx2SpectrumKernels() noexcept { return nullptr; }
#endif

namespace {
const SpectrumKernels& best() {
    const SpectrumKernels* const wide = avx2SpectrumKernels();
    return wide != nullptr ? *wide : kBaselineSpectrumKernels;
}
const SpectrumKernels& chosen = best(); // at load, so that no thread ever waits for the choice
} // namespace

const SpectrumKernels& spectrumKernels() noexcept { return chosen; }

} // namespace Orvel
