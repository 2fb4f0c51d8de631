// Where stereo audio comes from: a file, the demonstration signal.
#pragma once

#include <cstdint>
#include <string>

namespace Standalone {

struct SourceInfo {
    std::string path; ///< as given by the user; a name in words where there is no file
    double sampleRate = 0;
    int channels = 0;        ///< of the original; what is read is always a pair
    std::int64_t frames = 0; ///< expected length; 0 when nobody knows before the end
};

/// A stream of sample pairs, read from start to end.
/// Threads: one.
class AudioSource {
  public:
    virtual ~AudioSource() = default;
    virtual const SourceInfo& info() const = 0;
    /// Fills both channels with `frames` samples, or with fewer at the end, and gives their number.
    /// A mono original feeds both channels; of more than two the first two are read.
    /// Fails: throws UserError when the original cannot be read on.
    virtual int read(float* left, float* right, int frames) = 0;
    /// The next read starts at `frame`, 0 up to the length.
    /// Fails: throws UserError when the original can only be read on.
    virtual void seek(std::int64_t frame) = 0;
};

} // namespace Standalone
