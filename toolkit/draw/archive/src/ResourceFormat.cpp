#include "draw/ResourceFormat.h"

namespace Sorel::ResourceFormat {

namespace {
constexpr std::byte kKey[] = {std::byte{0xB5}, std::byte{0x6E}};
}

void scramble(std::span<std::byte> entry) noexcept {
    for (std::size_t i = 0; i < entry.size(); ++i)
        entry[i] ^= kKey[i & 1];
}

} // namespace Sorel::ResourceFormat
