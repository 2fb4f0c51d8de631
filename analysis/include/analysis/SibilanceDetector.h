// How much of an "s" there is in a voice.
#pragma once

#include "analysis/PeakFollower.h"
#include "analysis/SibilanceBandFilter.h"
#include "core/RealTime.h"
#include "core/Relaxed.h"

namespace Orvel {

enum class SibilanceVoice : int { off = 0, male = 1, female = 2 };

/// Opens a gate while the band in which the s-sounds of a voice lie is above -24 dBFS, and makes a
/// smooth envelope from it that rises and falls in 100 ms.
/// Shape: two channels, the louder counts. Unit: input linear, 1.0 is full scale; envelope 0 to 1.
/// Threads: `process` on the analysing thread; `setVoice` anywhere, carried out with the next
/// slice; the rest under the analysis lock. Fails: std::bad_alloc from `setSampleRate`.
class SibilanceDetector {
  public:
    struct Band {
        double lowCut; // Hz
        double highCut;
    };
    static constexpr Band kMale{5000, 8000};
    static constexpr Band kFemale{7000, 10000};

    SibilanceDetector();

    /// Hz. The filter starts over.
    void setSampleRate(float sampleRate);
    /// Switching to a voice starts everything over with the next slice.
    void setVoice(SibilanceVoice voice) noexcept { wanted_ = static_cast<int>(voice); }
    SibilanceVoice voice() const noexcept { return static_cast<SibilanceVoice>(wanted_.load()); }
    /// Starts over with the same voice.
    void reset() noexcept;

    /// Writes the envelope. Gives false and leaves `envelope` alone when there is no voice.
    bool process(const float* left,
                 const float* right,
                 int count,
                 float* envelope) noexcept ORVEL_NONBLOCKING;

  private:
    void carryOutRequest() noexcept;
    void follow(const float* left, const float* right, int count, float* envelope) noexcept;

    Core::Relaxed<int> wanted_{0}; // SibilanceVoice; written anywhere, read by the analysing thread
    SibilanceVoice active_ = SibilanceVoice::off;
    CSibilanceBandFilter filter_;
    PeakFollower follower_;
};

} // namespace Orvel
