// What calls for audio in time: a sound card, or a silent clock in its place.
#pragma once

#include "core/RealTime.h"

#include <string>

namespace Standalone {

/// One call for audio. Samples of -1..1, `frames` of each channel.
struct AudioBlock {
    const float* inputs[2] = {}; ///< null where the clock has no input
    float* outputs[2] = {};      ///< null where it has no output
    int frames = 0;
    bool brokeOff = false; ///< the device ran dry, or over, since the last call
};

/// Who is called.
class IAudioClient {
  public:
    /// Before the first call; the device has chosen. Threads: main.
    virtual void prepare(double sampleRate, int usualFrames) = 0;
    /// Threads: audio.
    virtual void process(const AudioBlock& block) noexcept ORVEL_NONBLOCKING = 0;

  protected:
    ~IAudioClient() = default;
};

/// Runs from its making to its destruction, which waits for a call under way.
/// Threads: main.
class AudioClock {
  public:
    virtual ~AudioClock() = default;
    /// False once the device is gone: no more calls can be relied on. Ask about every 25 ms.
    virtual bool isAlive() = 0;
    /// For the user: "JACK, system".
    virtual std::string name() const = 0;
};

} // namespace Standalone
