// One function per record, stamped out by the compiler.
#include "Create.h"

#include "Vardo_AAX_Editor_Wrapper.h"
#include "Vardo_AAX_Wrapper.h"

#include <algorithm>
#include <array>
#include <utility>

namespace Vardo::Aax {

namespace {
template <int recordIndex>
AAX_CEffectParameters* AAX_CALLBACK createParameters() noexcept {
    try {
        return new Vardo_AAX_Wrapper(recordIndex);
    } catch (...) {
        return nullptr;
    }
}

template <int... indices>
constexpr auto allFunctions(std::integer_sequence<int, indices...> /*records*/) {
    return std::array<CreateParameters, sizeof...(indices)>{&createParameters<indices>...};
}

constexpr auto kFunctions = allFunctions(std::make_integer_sequence<int, kNumCreateFunctions>());

AAX_CEffectGUI* AAX_CALLBACK createEditor() noexcept {
    try {
        return new Vardo_AAX_Editor_Wrapper;
    } catch (...) {
        return nullptr;
    }
}
} // namespace

CreateParameters createParametersFunction(int recordIndex) noexcept {
    return kFunctions[static_cast<std::size_t>(
        std::clamp(recordIndex, 0, kNumCreateFunctions - 1))];
}

CreateEditor createEditorFunction() noexcept { return &createEditor; }

} // namespace Vardo::Aax
