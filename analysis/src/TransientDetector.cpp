#include "analysis/TransientDetector.h"

#include "SampleCount.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>

namespace Orvel {

namespace {
constexpr float kFloor = std::bit_cast<float>(std::uint32_t{0x39A5CB5F}); // -70 dBFS
constexpr int kPiece = 256; // samples worked on at once: a slice at most rates

inline float larger(float a, float b) { return a > b ? a : b; }
} // namespace

CTransientDetector::CTransientDetector() {
    // 0.1F is a little more than 0.1, so the attack of the fast follower is short, but not at once.
    fast_.setTimes(0.1F, 50, 3);
    slow_.setTimes(100, 60, 0);
    envelope_.setWindow(10);
    setSampleRate(sampleRate_);
}

void CTransientDetector::setSampleRate(float sampleRate) {
    envelope_.setSampleRate(sampleRate);
    sampleRate_ = sampleRate;
    holdSamples_ = samplesIn(holdMs_, sampleRate);
    samplesSinceMark_ = std::min(samplesSinceMark_, holdSamples_);
    fast_.setSampleRate(sampleRate);
    slow_.setSampleRate(sampleRate);
}

void CTransientDetector::reset() noexcept {
    envelope_.clear();
    fast_.reset();
    slow_.reset();
    samplesSinceMark_ = holdSamples_; // the first onset counts
}

int CTransientDetector::process(const float* left,
                                const float* right,
                                int count,
                                float* marks) noexcept {
    int first = -1;
    for (int begin = 0; begin < count; begin += kPiece) {
        const int piece = std::min(kPiece, count - begin);
        float envelope[kPiece];
        for (int i = 0; i < piece; ++i)
            envelope[i] =
                larger(larger(std::abs(left[begin + i]), std::abs(right[begin + i])), kFloor);
        envelope_.process(envelope, piece, envelope);
        const int mark = scan(envelope, piece, marks + begin);
        if (mark >= 0 && first < 0) first = begin + mark;
    }
    return first;
}

int CTransientDetector::scan(const float* envelope, int count, float* marks) noexcept {
    int first = -1;
    const float threshold = 1 - sensitivity_;
    PeakFollower fastFollower = fast_; // copies may live in registers
    PeakFollower slowFollower = slow_;
    for (int i = 0; i < count; ++i) {
        const double level{envelope[i]};
        const auto fast = static_cast<float>(fastFollower.step(level));
        const auto slow = static_cast<float>(slowFollower.step(level));
        marks[i] = 0;
        if (samplesSinceMark_ < holdSamples_) {
            ++samplesSinceMark_;
            continue;
        }
        // Far below the threshold, the usual case, is told without the division.
        const float lead = fast - slow;
        if (!(lead > 0.5F * threshold * fast) || !(fast > kFloor)) continue;
        if (!(lead / fast > threshold)) continue;
        samplesSinceMark_ = 0;
        marks[i] = 1;
        if (first < 0) first = i;
    }
    fast_ = fastFollower;
    slow_ = slowFollower;
    return first;
}

} // namespace Orvel
