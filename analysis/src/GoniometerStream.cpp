#include "analysis/GoniometerStream.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace Orvel {

namespace {
constexpr float kUsualScale = 0.9F;

float largestMagnitude(const float* samples, int count) {
    float largest = 0;
    for (int i = 0; i < count; ++i)
        largest = std::max(largest, std::abs(samples[i]));
    return largest;
}
} // namespace

GoniometerStream::GoniometerStream() {
    for (auto& cell : ring_)
        cell.store(std::bit_cast<std::uint64_t>(GoniometerPoint{}), std::memory_order_relaxed);
}

void GoniometerStream::push(const float* left, const float* right, int count) noexcept {
    const float peak = std::max(largestMagnitude(left, count), largestMagnitude(right, count));
    const float scale = peak >= 1 ? 1 / peak : kUsualScale;
    // More samples than points: every so-many-th.
    const int stride =
        std::max(1, static_cast<int>(std::lrint(static_cast<float>(count) / float{kNumPoints})));
    std::uint32_t next = next_;
    for (int i = 0; i < count; i += stride) {
        const GoniometerPoint point{std::clamp((right[i] - left[i]) * scale * 0.5F, -1.0F, 1.0F),
                                    std::clamp((right[i] + left[i]) * scale * 0.5F, -1.0F, 1.0F)};
        ring_[next % kNumPoints].store(std::bit_cast<std::uint64_t>(point),
                                       std::memory_order_relaxed);
        ++next;
    }
    next_ = next;
}

void GoniometerStream::read(std::array<GoniometerPoint, kNumPoints>& points) const noexcept {
    const std::uint32_t oldest = next_;
    for (std::uint32_t i = 0; i < kNumPoints; ++i)
        points[i] = std::bit_cast<GoniometerPoint>(
            ring_[(oldest + i) % kNumPoints].load(std::memory_order_relaxed));
}

} // namespace Orvel
