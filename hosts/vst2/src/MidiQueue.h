// MIDI on its way from the host's event call to the next block.
#pragma once

#include "Vst2Abi.h"
#include "core/RealTime.h"
#include "core/RealtimeGate.h"
#include "frame/EventList.h"

namespace Vardo {

/// Hosts fill it just before the block, on the same thread; one that uses two threads loses no
/// memory safety, at worst it finds its events one block later.
class MidiQueue {
  public:
    /// Events that find room without a call to the heap.
    static constexpr std::size_t kReserved = 1024;
    /// Events beyond this many for one block are dropped.
    static constexpr std::size_t kMost = 65536;

    MidiQueue();

    /// Any thread. Takes the MIDI events and ignores the others. Allocates only beyond kReserved.
    void append(const vst2::VstEvents& events) noexcept ORVEL_NONBLOCKING;
    /// One thread at a time: all that came since the last call, good until the next one.
    const EventList& take() noexcept ORVEL_NONBLOCKING;

  private:
    bool enter() noexcept ORVEL_NONBLOCKING;

    Core::Threads::RealtimeGate gate_; // of incoming_
    EventList incoming_;
    EventList taken_;
};

} // namespace Vardo
