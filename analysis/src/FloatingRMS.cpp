#include "analysis/FloatingRMS.h"

#include "SampleCount.h"
#include "kernels/Kernels.h"

#include <algorithm>
#include <cmath>

namespace Orvel {

void CFloatingRMS::setSampleRate(float sampleRate) {
    sampleRate_ = sampleRate;
    redimension();
}

void CFloatingRMS::setLength(float milliseconds) {
    lengthMs_ = milliseconds;
    redimension();
}

void CFloatingRMS::setMaximumLength(float milliseconds) {
    maximumMs_ = milliseconds;
    redimension();
}

void CFloatingRMS::redimension() {
    const int size = samplesIn(maximumMs_, sampleRate_);
    if (static_cast<std::size_t>(size) > ring_.size())
        ring_ = std::vector<std::uint32_t>(static_cast<std::size_t>(size));
    window_ = std::min(samplesIn(lengthMs_, sampleRate_), size);
    clear();
}

void CFloatingRMS::clear() noexcept {
    std::fill(ring_.begin(), ring_.end(), 0U);
    position_ = 0;
    sum_ = 0;
    value_ = 0;
}

void CFloatingRMS::feed(const float* samples, int count) noexcept {
    while (count > 0) {
        const int run = std::min(count, window_ - position_);
        sum_ += kernels().slideSquares(samples, run, ring_.data() + position_);
        position_ += run;
        if (position_ == window_) position_ = 0;
        samples += run;
        count -= run;
    }
    updateValue();
}

void CFloatingRMS::updateValue() noexcept {
    double mean = static_cast<double>(sum_) / double{kSquareScale} / window_;
    if (doubledPower_) mean *= 2;
    value_ = static_cast<float>(std::sqrt(mean));
}

} // namespace Orvel
