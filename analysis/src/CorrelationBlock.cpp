#include "analysis/CorrelationBlock.h"

#include <algorithm>
#include <cmath>

namespace Orvel {

namespace {

constexpr float kWindowAt44100 = 2048;
constexpr float kSilence = 0.0001F;
constexpr double kStep = 0.007; // per slice
// A channel that varies by less than this share of its power is constant, or rounding.
constexpr double kConstant = 1e-12;
constexpr double kAntiDenormal = 1e-24; // keeps the decay out of the denormal range

float withoutNoise(float x) { return std::abs(x) < kSilence ? 0 : x; }

} // namespace

void CorrelationBlock::setSampleRate(float sampleRate) {
    const auto size = static_cast<std::size_t>(
        std::max(1.0F, std::max(1.0F, sampleRate) / 44100.0F * kWindowAt44100));
    windowLeft_.assign(size, 0.0F);
    windowRight_.assign(size, 0.0F);
    fill_ = 0;
    lastResult_ = 0;
}

void CorrelationBlock::reset() noexcept {
    fill_ = 0;
    lastResult_ = 0;
    correlation_ = 0;
}

float CorrelationBlock::Compute(const float* left, const float* right, int count) noexcept {
    double sum = 0;
    int windows = 0;
    for (auto rest = static_cast<std::size_t>(std::max(0, count)); rest > 0;) {
        const std::size_t run = std::min(rest, windowLeft_.size() - fill_);
        std::transform(left, left + run, windowLeft_.data() + fill_, withoutNoise);
        std::transform(right, right + run, windowRight_.data() + fill_, withoutNoise);
        left += run;
        right += run;
        rest -= run;
        fill_ += run;
        if (fill_ < windowLeft_.size()) break;
        fill_ = 0;
        sum += double{correlateWindow()};
        ++windows;
    }
    if (windows > 0) lastResult_ = static_cast<float>(sum / windows);
    return lastResult_;
}

float CorrelationBlock::correlateWindow() const noexcept {
    // Sums in double: with single ones, equal channels would read 0.9999.
    double sumL = 0;
    double sumR = 0;
    double sumLL = 0;
    double sumRR = 0;
    double sumLR = 0;
    for (std::size_t i = 0; i < windowLeft_.size(); ++i) {
        const double l{windowLeft_[i]};
        const double r{windowRight_[i]};
        sumL += l;
        sumR += r;
        sumLL += l * l;
        sumRR += r * r;
        sumLR += l * r;
    }
    const double n = static_cast<double>(windowLeft_.size());
    const double varianceL = sumLL / n - sumL / n * (sumL / n);
    const double varianceR = sumRR / n - sumR / n * (sumR / n);
    if (varianceL <= kConstant * sumLL / n || varianceR <= kConstant * sumRR / n) return 0;
    const double covariance = sumLR / n - sumL / n * (sumR / n);
    return static_cast<float>(std::clamp(covariance / std::sqrt(varianceL * varianceR), -1.0, 1.0));
}

void CorrelationBlock::feed(const float* left, const float* right, int count) noexcept {
    const double result{Compute(left, right, count)};
    const double smoothed{correlation_};
    correlation_ = static_cast<float>(smoothed + kAntiDenormal + (result - smoothed) * kStep);
}

} // namespace Orvel
