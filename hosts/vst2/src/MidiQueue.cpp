// Events in, events out, bounded.
#include "MidiQueue.h"

#include "hosting/MidiMessage.h"

#include <new>

namespace Vardo {

namespace {
MidiRecord toRecord(const vst2::VstMidiEvent& event) {
    return midiRecord(event.deltaFrames, event.midiData[0], event.midiData[1], event.midiData[2]);
}
} // namespace

MidiQueue::MidiQueue() {
    incoming_.reserve(kReserved);
    taken_.reserve(kReserved);
}

bool MidiQueue::enter() noexcept {
    // The other side holds the gate for a few instructions, unless the system took its core away.
    for (int attempt = 0; attempt < 1000; ++attempt)
        if (gate_.tryEnter()) return true;
    return false;
}

void MidiQueue::append(const vst2::VstEvents& events) noexcept {
    if (!enter()) return;
    try {
        // The record's own list has two places; the host's has as many as it says.
        vst2::VstEvent* const* list = events.events;
        for (std::int32_t i = 0; i < events.numEvents && incoming_.size() < kMost; ++i) {
            const vst2::VstEvent* event = list[i];
            if (event != nullptr && event->type == vst2::kVstMidiType)
                incoming_.push_back(toRecord(*reinterpret_cast<const vst2::VstMidiEvent*>(event)));
        }
    } catch (const std::bad_alloc&) { // what found no room is dropped
    }
    gate_.leave();
}

const EventList& MidiQueue::take() noexcept {
    taken_.clear();
    if (enter()) {
        taken_.swap(incoming_);
        gate_.leave();
    }
    return taken_;
}

} // namespace Vardo
