// The two axes of a spectrum: frequency along a width, level along a height.
#pragma once

#include "analysis/SpectrumHandover.h"

namespace Orvel {

inline constexpr float kHighestShownDb = 9.0F;
inline constexpr float kLowestShownHz = 20.0F;

/// From 20 Hz at 0 to half the sample rate at `width`. Threads: its owner's.
class FrequencyScale {
  public:
    /// Hz; at least 1000.
    void setSampleRate(double sampleRate) noexcept;
    /// Any unit of length, above 0.
    void setWidth(double width) noexcept;
    void setLinear(bool linear) noexcept { linear_ = linear; }

    bool isLinear() const noexcept { return linear_; }
    double width() const noexcept { return width_; }
    double highestHz() const noexcept { return highestHz_; } ///< half the sample rate

    double frequencyAt(double x) const noexcept;
    /// The inverse; below 20 Hz it is that of 20 Hz.
    double positionOf(double hz) const noexcept;
    /// Within what is shown.
    double limited(double hz) const noexcept;

  private:
    double highestHz_ = 24000;
    double width_ = 1;
    bool linear_ = false;
};

/// Where a level stands between two heights, limited to what is shown.
float levelPosition(float db, float top, float bottom) noexcept;

/// (1 - cos(pi t)) / 2 for t in 0..1, from a table that all share. The way from one bin to the next
/// where bins are wider than columns. Threads: any but the audio and the analysing thread; the
/// first call makes the table.
float raisedCosine(float t) noexcept;

} // namespace Orvel
