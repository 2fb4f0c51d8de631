// Where the host's song is, as one block is told.
#pragma once

#include "core/RealTime.h"

class AAX_ITransport;

namespace Vardo::Aax {

/// At first what holds where a host says nothing.
struct SongPosition {
    double tempo = 10.0; ///< beats per minute, always above 0
    bool playing = false;
    double samples = 0; ///< from the start of the song, never negative

    /// Asks the host; null has nothing to say. Each answer is taken only when it makes sense.
    /// Threads: any; on the audio thread with the transport that the block brings.
    static SongPosition read(const AAX_ITransport* host) ORVEL_NONBLOCKING;

    /// Quarter notes, as if the tempo had always been this one. `sampleRate` in Hz, above 0.
    double quarters(double sampleRate) const noexcept {
        return samples / (60.0 / tempo * sampleRate);
    }
};

} // namespace Vardo::Aax
