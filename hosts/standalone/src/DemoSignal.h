// Eight seconds of music made on the spot, for a first look without a recording.
#pragma once

#include "AudioSource.h"

#include <vector>

namespace Standalone {

/// Four bars at 120 beats per minute: bass drum, snare and hi-hat, a bass line, a voice-like hiss,
/// a wide chord, and a few drum hits that run into the limit above full scale. 48 kHz, stereo, the
/// same samples every time.
class DemoSignal final : public AudioSource {
  public:
    static constexpr int kSampleRate = 48000;
    static constexpr int kSeconds = 8;
    /// Linear. The hardest hits are cut here: +0.5 dBFS, so that over counters have work.
    static constexpr float kClipLevel = 1.0593F;

    DemoSignal();

    const SourceInfo& info() const override { return info_; }
    int read(float* left, float* right, int frames) override;
    void seek(std::int64_t frame) override;

  private:
    SourceInfo info_;
    std::vector<float> left_;
    std::vector<float> right_;
    std::size_t position_ = 0;
};

} // namespace Standalone
