#include "analysis/TransportClock.h"

#include <cmath>
#include <cstdlib>

namespace Orvel {

namespace {
// 2^53: up to here doubles count samples one by one. Nearly 6000 years at 48 kHz.
constexpr double kLargestPosition = 9007199254740992.0;
} // namespace

bool TransportClock::beginChunk(const AnalysisBlock& block, double sampleRate) noexcept {
    const bool tempoChanged = isValidTempo(double{block.tempo}) && block.tempo != tempo_.load();
    if (tempoChanged) tempo_ = block.tempo;

    const bool started = block.playing && !playing_;
    playing_ = block.playing;
    if (!block.playing) return tempoChanged;

    const double samples = 60.0 / double{tempo_} * block.position * sampleRate;
    if (!(std::abs(samples) < kLargestPosition)) return tempoChanged;
    const std::int64_t host = std::llround(samples);
    const bool jumped = std::llabs(host - position_) > block.sampleCount;
    if (started || tempoChanged || jumped) position_ = host;
    return tempoChanged;
}

} // namespace Orvel
