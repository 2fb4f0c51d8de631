// How often each level occurred in the last while.
#pragma once

#include "analysis/HistogramScale.h"
#include "core/RealTime.h"
#include "frame/AnalysisSnapshot.h"

#include <cstdint>
#include <vector>

namespace Orvel {

/// Counts of samples per decibel bin (HistogramScale) over a sliding window.
/// Shape: one channel. Threads: `feed` on the analysing thread; everything else under the analysis
/// lock. Fails: std::bad_alloc from the setters.
class CFloatingHistogram {
  public:
    // Each restarts the measurement.
    void setSampleRate(float sampleRate);
    /// Milliseconds.
    void setLength(float milliseconds);

    void feed(const float* samples, int count) noexcept ORVEL_NONBLOCKING;
    void clear() noexcept;

    /// Count of bin 0..108.
    std::int32_t count(int bin) const noexcept { return slots_[slotOf(bin)]; }
    Vardo::HistogramCounts counts() const noexcept;
    /// Largest count of the bins up to +12 dB.
    std::int32_t highestCount() const noexcept { return highestCount_; }
    /// Samples.
    int window() const noexcept { return static_cast<int>(ring_.size()); }

  private:
    // Slot 0 takes the samples that belong to no bin, so that the loop needs no branch.
    static constexpr std::size_t kNumSlots = HistogramScale::kNumBins + 1;
    static std::size_t slotOf(int bin) { return static_cast<std::size_t>(bin) + 1; }
    void redimension();

    float sampleRate_ = 44100.0F;
    float lengthMs_ = 10.0F;
    std::int32_t slots_[kNumSlots] = {};
    std::vector<std::uint8_t> ring_; // the slot of each sample of the window
    std::size_t position_ = 0;
    std::int32_t highestCount_ = 0;
};

} // namespace Orvel
