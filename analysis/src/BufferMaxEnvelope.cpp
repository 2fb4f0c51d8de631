#include "analysis/BufferMaxEnvelope.h"

#include "SampleCount.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace Orvel {

namespace {
constexpr float kLowest = std::numeric_limits<float>::lowest();

inline float larger(float a, float b) { return a > b ? a : b; }

// Four samples at once, the first in time in lane 0.
using Four = float __attribute__((vector_size(16)));
constexpr Four kLowestFour = {kLowest, kLowest, kLowest, kLowest};

inline Four load(const float* from) {
    Four x;
    std::memcpy(&x, from, sizeof x);
    return x;
}
inline void store(float* to, Four x) { std::memcpy(to, &x, sizeof x); }
inline Four larger(Four a, Four b) { return a > b ? a : b; }

/// Lane by lane the largest from lane 0 up to it.
inline Four heads(Four x) {
    x = larger(x, __builtin_shufflevector(kLowestFour, x, 0, 4, 5, 6));
    return larger(x, __builtin_shufflevector(kLowestFour, x, 0, 1, 4, 5));
}
/// Lane by lane the largest from it up to lane 3.
inline Four tails(Four x) {
    x = larger(x, __builtin_shufflevector(x, kLowestFour, 1, 2, 3, 4));
    return larger(x, __builtin_shufflevector(x, kLowestFour, 2, 3, 4, 5));
}
} // namespace

CBufferMaxEnvelope::CBufferMaxEnvelope() { redimension(); }

void CBufferMaxEnvelope::setSampleRate(float sampleRate) {
    sampleRate_ = sampleRate;
    redimension();
}

void CBufferMaxEnvelope::setWindow(float milliseconds) {
    windowMs_ = milliseconds;
    redimension();
}

void CBufferMaxEnvelope::redimension() {
    const int window = samplesIn(windowMs_, sampleRate_);
    ring_.resize(static_cast<std::size_t>(window) + 1);
    windowSamples_ = window;
    clear();
}

void CBufferMaxEnvelope::clear() noexcept {
    std::fill(ring_.begin(), ring_.end() - 1, 0.0F);
    ring_.back() = kLowest;
    writeIndex_ = 0;
    head_ = kLowest;
}

void CBufferMaxEnvelope::finishRing() noexcept {
    float* const ring = ring_.data();
    Four tail = kLowestFour; // the same in every lane
    int i = windowSamples_;
    for (; i >= 4; i -= 4) {
        const Four x = larger(tails(load(ring + i - 4)), tail);
        store(ring + i - 4, x);
        tail = __builtin_shufflevector(x, x, 0, 0, 0, 0);
    }
    for (float rest = tail[0]; i > 0; --i)
        rest = ring[i - 1] = larger(ring[i - 1], rest);
    writeIndex_ = 0;
    head_ = kLowest;
}

void CBufferMaxEnvelope::process(const float* input, int count, float* output) noexcept {
    while (count > 0) {
        const int run = std::min(count, windowSamples_ - writeIndex_);
        float* const ring = ring_.data() + writeIndex_;
        Four heads4 = {head_, head_, head_, head_}; // the same in every lane
        int i = 0;
        for (; i + 4 <= run; i += 4) {
            const Four x = load(input + i);
            const Four head = larger(heads(x), heads4);
            store(output + i, larger(head, load(ring + i + 1)));
            store(ring + i, x);
            heads4 = __builtin_shufflevector(head, head, 3, 3, 3, 3);
        }
        float head = heads4[0];
        for (; i < run; ++i) {
            const float x = input[i];
            head = larger(x, head);
            output[i] = larger(head, ring[i + 1]);
            ring[i] = x;
        }
        head_ = head;
        writeIndex_ += run;
        if (writeIndex_ == windowSamples_) finishRing();
        input += run;
        output += run;
        count -= run;
    }
}

float CBufferMaxEnvelope::step(float input) noexcept {
    process(&input, 1, &input);
    return input;
}

} // namespace Orvel
