// From a host's list of instances to each instance's wrapper.
#include "Render.h"

#include "Vardo_AAX_Wrapper.h"

namespace Vardo::Aax {

namespace {
void renderAll(AlgorithmContext* const* begin, const void* end, StemPair stems) noexcept {
    if (begin == nullptr) return;
    for (auto* const* instance = begin; instance < end; ++instance) {
        const AlgorithmContext* context = *instance;
        if (context == nullptr || context->wrapper == nullptr) continue;
        if (Vardo_AAX_Wrapper* wrapper = *context->wrapper) wrapper->render(*context, stems);
    }
}

template <int inputChannels, int outputChannels>
void AAX_CALLBACK renderStems(AlgorithmContext* const begin[], const void* end) noexcept {
    renderAll(begin, end, {inputChannels, outputChannels});
}
} // namespace

RenderFunction renderFunction(Algorithm algorithm) noexcept {
    switch (algorithm) {
    case Algorithm::monoToMono:
        return &renderStems<1, 1>;
    case Algorithm::monoToStereo:
        return &renderStems<1, 2>;
    default:
        return &renderStems<2, 2>;
    }
}

} // namespace Vardo::Aax
