// A recording on disk, read piece by piece: WAV, FLAC, OGG, MP3 and what else libsndfile knows.
#pragma once

#include "AudioSource.h"

#include <memory>
#include <vector>

namespace Standalone {

/// Files may be hours long: memory does not grow with their length.
class AudioFile final : public AudioSource {
  public:
    /// Fails: throws UserError when there is no such file, or it is empty or not a recording.
    explicit AudioFile(const std::string& path);
    ~AudioFile() override;

    const SourceInfo& info() const override { return info_; }
    int read(float* left, float* right, int frames) override;
    void seek(std::int64_t frame) override;

  private:
    struct Decoder; // libsndfile's own type stays in the source file

    SourceInfo info_;
    std::unique_ptr<Decoder> decoder_;
    int framesPerPiece_ = 0;
    std::vector<float> piece_; // interleaved
};

} // namespace Standalone
