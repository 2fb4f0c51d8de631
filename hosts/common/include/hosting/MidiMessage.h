// Three bytes of MIDI as plug-ins get them.
#pragma once

#include "frame/EventList.h"

namespace Vardo {

/// `deltaFrames`: samples from the start of the next block.
inline MidiRecord
midiRecord(std::int32_t deltaFrames, std::uint8_t status, std::uint8_t data1, std::uint8_t data2) {
    MidiRecord record;
    record.deltaFrames = deltaFrames;
    record.status = status;
    record.data1 = data1;
    record.data2 = data2;
    record.message = status & 0xF0;
    record.normalizedData2 = static_cast<float>((data2 & 0x7F) / 127.0);
    return record;
}

} // namespace Vardo
