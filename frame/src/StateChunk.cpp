#include "frame/StateChunk.h"

#include "core/DataStore.h"
#include "core/LittleEndian.h"

#include <array>

namespace Vardo {

std::vector<std::byte> withActivePage(const void* chunk, int size, int page) {
    Core::CDataStore store;
    if (!store.parse(chunk, size)) return {};

    std::array<std::byte, 4> number{};
    Core::writeI32(number.data(), page);
    if (!store.setBlob(StateKeys::kActivePage, number.data(), static_cast<int>(number.size())))
        return {};

    void* data = nullptr;
    int bytes = 0;
    store.serialise(&data, &bytes);
    const auto* first = static_cast<const std::byte*>(data);
    return {first, first + bytes};
}

} // namespace Vardo
