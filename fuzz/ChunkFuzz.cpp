// State chunks from anywhere: whatever comes in, every parameter stays inside its limits and what
// the plug-in then saves comes back exactly.
//
// A whole chunk is scrambled, so mutations of it seldom get past the outer layer. The first byte of
// the input therefore says what the rest is: a chunk, or the parameters inside one.
#include "analysis/OrvelScope.h"
#include "frame/StateChunk.h"

#include <cstdint>
#include <cstdlib>
#include <vector>

namespace {

std::vector<std::byte> chunkOf(Orvel::COrvelScope& scope) {
    void* data = nullptr;
    const int size = scope.getChunk(&data);
    const auto* const bytes = static_cast<const std::byte*>(data);
    return {bytes, bytes + size};
}

void require(bool condition) {
    if (!condition) std::abort();
}

void load(Orvel::COrvelScope& scope, const std::uint8_t* data, int size, bool insideOnly) {
    if (!insideOnly) {
        scope.setChunk(data, size);
        return;
    }
    Core::CDataStore store;
    store.setBlob(Vardo::StateKeys::kParameters, data, size);
    void* chunk = nullptr;
    int chunkSize = 0;
    store.serialise(&chunk, &chunkSize);
    scope.setChunk(chunk, chunkSize);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    setenv("XDG_CONFIG_HOME", "/tmp/orvel-fuzz-config", 1); // not the user's settings
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    static Orvel::COrvelScope scope(nullptr);
    load(scope, data + 1, static_cast<int>(size - 1), (data[0] & 1) != 0);

    for (int i = 0; i < scope.getNumParameters(); ++i) {
        Vardo::IPluginParameter& parameter = *scope.getParameter(i);
        require(parameter.getValue() >= parameter.getMin());
        require(parameter.getValue() <= parameter.getMax());
    }
    require(scope.activePage() >= 0 && scope.activePage() <= 3);

    const auto saved = chunkOf(scope);
    scope.setChunk(saved.data(), static_cast<int>(saved.size()));
    require(chunkOf(scope) == saved);
    return 0;
}
