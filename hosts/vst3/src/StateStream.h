// The state of a plug-in, and of its bypass, in a host's stream.
#pragma once

#include "pluginterfaces/base/ibstream.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace Vardo {

/// Bytes. A larger chunk is not ours, and is not even read.
inline constexpr std::uint32_t kLargestChunk = 16U << 20;

/// Little-endian: a 32-bit 0, the chunk's size as 32 bits, the chunk.
/// Fails: false where the stream takes less than all of it.
bool writeState(Steinberg::IBStream& stream, const void* chunk, std::uint32_t size);

struct StateRead {
    bool headerCame = false; ///< both numbers before the chunk
    /// None where the chunk is empty, too large or not all there. The stream may give it in pieces.
    std::optional<std::vector<char>> chunk;
};
/// Lets std::bad_alloc through.
StateRead readState(Steinberg::IBStream& stream);

/// The controller's own state: the bypass, which is the adapter's and so not in the chunk. Two
/// little-endian 32-bit numbers, `kBypassMark` and 0 or 1.
inline constexpr std::uint32_t kBypassMark = 0x4D427970; // 'MByp'
bool writeBypass(Steinberg::IBStream& stream, bool bypassed);
/// None where the stream holds something else.
std::optional<bool> readBypass(Steinberg::IBStream& stream);

} // namespace Vardo
