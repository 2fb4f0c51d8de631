// Between a sound card and a recording of another sample rate.
#pragma once

#include "AudioClock.h"

#include <memory>
#include <vector>

namespace Standalone {

/// Calls its client at the recording's rate and gives the card what it plays, converted. What the
/// client sees and analyses is untouched: only what is heard is converted.
class RateConverter final : public IAudioClient {
  public:
    /// `client` outlives this; `sourceRate` in Hz. Fails: throws std::bad_alloc.
    RateConverter(IAudioClient& client, double sourceRate);
    ~RateConverter();
    RateConverter(const RateConverter&) = delete;
    RateConverter& operator=(const RateConverter&) = delete;

    // IAudioClient
    void prepare(double sampleRate, int usualFrames) override;
    void process(const AudioBlock& block) noexcept ORVEL_NONBLOCKING override;

  private:
    struct Converter; // libsamplerate's own type stays in the source file

    long pull(float** interleaved) noexcept;

    IAudioClient& client_;
    double sourceRate_;
    double ratio_ = 1; ///< frames of the card for one of the source
    std::unique_ptr<Converter> converter_;
    std::vector<float> left_; ///< one call of the client
    std::vector<float> right_;
    std::vector<float> interleaved_; ///< the same
    std::vector<float> converted_;   ///< interleaved
    bool brokeOff_ = false;
};

} // namespace Standalone
