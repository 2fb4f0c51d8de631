#include "analysis/FloatingHistogram.h"

#include "SampleCount.h"

#include <algorithm>

namespace Orvel {

static_assert(HistogramScale::kNumBins == Vardo::kNumHistogramBins);

void CFloatingHistogram::setSampleRate(float sampleRate) {
    sampleRate_ = sampleRate;
    redimension();
}

void CFloatingHistogram::setLength(float milliseconds) {
    lengthMs_ = milliseconds;
    redimension();
}

void CFloatingHistogram::redimension() {
    ring_.resize(static_cast<std::size_t>(samplesIn(lengthMs_, sampleRate_)));
    clear();
}

void CFloatingHistogram::clear() noexcept {
    std::fill(ring_.begin(), ring_.end(), std::uint8_t{0});
    std::fill(std::begin(slots_), std::end(slots_), 0);
    slots_[0] = static_cast<std::int32_t>(ring_.size()); // the window begins as silence
    position_ = 0;
    highestCount_ = 0;
}

void CFloatingHistogram::feed(const float* samples, int count) noexcept {
    const HistogramScale& scale = HistogramScale::instance();
    const std::size_t size = ring_.size();
    std::size_t position = position_;
    for (int i = 0; i < count; ++i) {
        const std::size_t slot = slotOf(scale.bin(samples[i]));
        ++slots_[slot];
        --slots_[ring_[position]];
        ring_[position] = static_cast<std::uint8_t>(slot);
        if (++position == size) position = 0;
    }
    position_ = position;
    // The bins shown: all but the one above +12 dB.
    highestCount_ = *std::max_element(slots_ + 1, slots_ + kNumSlots - 1);
}

Vardo::HistogramCounts CFloatingHistogram::counts() const noexcept {
    Vardo::HistogramCounts counts;
    std::copy(slots_ + 1, slots_ + kNumSlots, counts.begin());
    return counts;
}

} // namespace Orvel
