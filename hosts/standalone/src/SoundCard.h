// The machine's sound card, through JACK, PulseAudio or ALSA.
#pragma once

#include "AudioClock.h"

#include <memory>

namespace Standalone {

/// A running stream to the default output, or from the default input.
class SoundCard : public AudioClock {
  public:
    static constexpr double kItsOwnRate = 0;

    /// Null when there is no card that plays two channels at this rate; `problem` then says why,
    /// and nothing where there is no card at all.
    /// `client` outlives the stream.
    static std::unique_ptr<SoundCard>
    play(IAudioClient& client, double sampleRate, std::string& problem);
    /// The default input at the rate it likes best; null as above.
    static std::unique_ptr<SoundCard> listen(IAudioClient& client, std::string& problem);
};

} // namespace Standalone
