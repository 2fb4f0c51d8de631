#include "analysis/SibilanceDetector.h"

#include <algorithm>
#include <cmath>

namespace Orvel {

namespace {
constexpr float kGateThreshold = 0.12589253F; // -18 dB, of twice the level
constexpr double kNothing = 1e-24;            // where the envelope has gone out
constexpr int kPiece = 256;                   // samples worked on at once: a slice at most rates
} // namespace

SibilanceDetector::SibilanceDetector() {
    filter_.setSlope(CSibilanceBandFilter::Slope::db12);
    follower_.setTimes(100, 100, 0);
    setSampleRate(44100);
}

void SibilanceDetector::setSampleRate(float sampleRate) {
    filter_.setSampleRate(sampleRate);
    follower_.setSampleRate(sampleRate);
}

void SibilanceDetector::reset() noexcept {
    filter_.reset();
    follower_.reset();
}

void SibilanceDetector::carryOutRequest() noexcept {
    const SibilanceVoice wanted = voice();
    if (wanted == active_) return;
    active_ = wanted;
    if (wanted == SibilanceVoice::off) return;
    const Band& band = wanted == SibilanceVoice::male ? kMale : kFemale;
    filter_.setBand(band.lowCut, band.highCut);
    reset();
}

bool SibilanceDetector::process(const float* left,
                                const float* right,
                                int count,
                                float* envelope) noexcept {
    carryOutRequest();
    if (active_ == SibilanceVoice::off) return false;
    float filteredLeft[kPiece];
    float filteredRight[kPiece];
    for (int begin = 0; begin < count; begin += kPiece) {
        const int piece = std::min(kPiece, count - begin);
        filter_.process(left + begin, right + begin, piece, filteredLeft, filteredRight);
        follow(filteredLeft, filteredRight, piece, envelope + begin);
    }
    return true;
}

void SibilanceDetector::follow(const float* left,
                               const float* right,
                               int count,
                               float* envelope) noexcept {
    PeakFollower follower = follower_; // a copy may live in registers
    for (int i = 0; i < count; ++i) {
        const float level = 2 * std::max(std::abs(left[i]), std::abs(right[i]));
        const double gate = level > kGateThreshold ? 1.0 : 0.0;
        envelope[i] = static_cast<float>(follower.step(gate));
    }
    follower_ = follower;
    // Decaying further would only end in denormal numbers.
    if (follower_.value() < kNothing) follower_.reset();
}

} // namespace Orvel
