// Events that a host delivers between blocks.
#pragma once

#include <cstdint>
#include <vector>

namespace Vardo {

/// One MIDI message of up to three bytes, with two readings of it that instruments ask for.
struct MidiRecord {
    std::int32_t deltaFrames = 0; ///< samples from the start of the next block
    std::uint8_t status = 0;
    std::uint8_t data1 = 0;
    std::uint8_t data2 = 0;
    std::uint8_t reserved = 0;
    std::int32_t message = 0;  ///< status without its channel
    float normalizedData2 = 0; ///< data byte 2 as 0..1
    std::int32_t unused[4] = {};
};
static_assert(sizeof(MidiRecord) == 32);

using EventList = std::vector<MidiRecord>;

} // namespace Vardo
