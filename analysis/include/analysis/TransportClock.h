// Where the song is, counted in samples by the analysis itself.
#pragma once

#include "analysis/AnalysisBlock.h"
#include "core/RealTime.h"
#include "core/Relaxed.h"

#include <cstdint>

namespace Orvel {

/// Tempo and position of the analysis. The position is read from the host when playback starts,
/// when the tempo changes and when the host jumps; in between it only counts samples, so that small
/// disagreements of hosts do not shake the picture.
/// Threads: analysing thread; the getters anywhere.
class TransportClock {
  public:
    static constexpr float kDefaultTempo = 120.0F; ///< beats per minute
    static bool isValidTempo(double tempo) { return tempo >= 1 && tempo <= 1000; }

    /// Takes the transport of the next chunk. An invalid tempo leaves the last one.
    /// Gives true when the tempo changed.
    bool beginChunk(const AnalysisBlock& block, double sampleRate) noexcept ORVEL_NONBLOCKING;
    void advance(int samples) noexcept ORVEL_NONBLOCKING { position_ = position_ + samples; }

    float tempo() const noexcept { return tempo_; }
    bool isPlaying() const noexcept { return playing_; }
    /// Samples since the start of the song.
    std::int64_t position() const noexcept { return position_; }

  private:
    Core::Relaxed<float> tempo_{kDefaultTempo};
    Core::Relaxed<bool> playing_{false};
    Core::Relaxed<std::int64_t> position_{0};
};

} // namespace Orvel
