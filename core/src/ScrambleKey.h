// The bytes that are combined with a chunk so that nobody edits it by hand.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace Core {

inline constexpr std::size_t kScrambleKeySize = 3945;

/// No secret, only the same in every reader and writer: changing the seed, the step or the size
/// makes all chunks written before unreadable.
/// The upper byte of each state of a 32-bit xorshift generator.
/// Source: G. Marsaglia, "Xorshift RNGs", Journal of Statistical Software 8 (14), 2003; 13, 17, 5.
constexpr std::array<std::uint8_t, kScrambleKeySize> makeScrambleKey() {
    std::array<std::uint8_t, kScrambleKeySize> key{};
    std::uint32_t state = 0x4F725363; // "OrSc"
    for (std::uint8_t& byte : key) {
        state ^= state << 13;
        state ^= state >> 17;
        state ^= state << 5;
        byte = static_cast<std::uint8_t>(state >> 24);
    }
    return key;
}

inline constexpr auto kScrambleKey = makeScrambleKey();

// The first word of a scrambled chunk never reads as it does in clear.
static_assert(kScrambleKey[0] != 0);

} // namespace Core
