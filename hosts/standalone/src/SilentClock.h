// Calls for audio as a sound card would, where there is none.
#pragma once

#include "AudioClock.h"

#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

namespace Standalone {

/// Keeps the sample rate by the machine's steady clock. What is played goes nowhere.
class SilentClock final : public AudioClock {
  public:
    /// `client` outlives this.
    SilentClock(IAudioClient& client, double sampleRate);
    ~SilentClock() override;

    bool isAlive() override { return true; }
    std::string name() const override { return "a silent clock"; }

  private:
    void run();

    IAudioClient& client_;
    double framesPerCall_; ///< on average
    std::vector<float> left_;
    std::vector<float> right_;

    std::mutex mutex_;
    std::condition_variable wake_;
    bool stopping_ = false;
    std::thread thread_; // last: it uses everything above
};

} // namespace Standalone
