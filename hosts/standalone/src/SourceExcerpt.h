// The beginning of a source.
#pragma once

#include "AudioSource.h"

#include <algorithm>

namespace Standalone {

/// Ends after a number of frames, or with the original if that is shorter.
class SourceExcerpt final : public AudioSource {
  public:
    /// `original` outlives this.
    SourceExcerpt(AudioSource& original, std::int64_t frames)
        : original_(original)
        , info_(original.info()) {
        info_.frames = frames;
    }

    const SourceInfo& info() const override { return info_; }
    int read(float* left, float* right, int frames) override {
        const std::int64_t wanted = std::clamp<std::int64_t>(info_.frames - position_, 0, frames);
        const int got = original_.read(left, right, static_cast<int>(wanted));
        position_ += got;
        return got;
    }
    void seek(std::int64_t frame) override {
        original_.seek(frame);
        position_ = frame;
    }

  private:
    AudioSource& original_;
    SourceInfo info_;
    std::int64_t position_ = 0;
};

} // namespace Standalone
