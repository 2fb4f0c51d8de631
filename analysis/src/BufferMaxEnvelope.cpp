#include "analysis/BufferMaxEnvelope.h"

#include "SampleCount.h"

#include <algorithm>
#include <limits>

namespace Orvel {

namespace {
constexpr float kLowest = std::numeric_limits<float>::lowest();

inline float larger(float a, float b) { return a > b ? a : b; }

/// Largest from the first up to each of four, done so that a run of fours waits for one maximum
/// per four and not per sample.
struct Heads {
    float upTo[4];
    Heads(float a, float b, float c, float d) {
        upTo[0] = a;
        upTo[1] = larger(a, b);
        const float cd = larger(c, d);
        upTo[2] = larger(upTo[1], c);
        upTo[3] = larger(upTo[1], cd);
    }
};
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
    float tail = kLowest;
    int i = windowSamples_;
    for (; i >= 4; i -= 4) {
        const Heads heads(ring[i - 1], ring[i - 2], ring[i - 3], ring[i - 4]);
        for (int k = 0; k < 4; ++k)
            ring[i - 1 - k] = larger(heads.upTo[k], tail);
        tail = ring[i - 4];
    }
    for (; i > 0; --i)
        tail = ring[i - 1] = larger(ring[i - 1], tail);
    writeIndex_ = 0;
    head_ = kLowest;
}

void CBufferMaxEnvelope::process(const float* input, int count, float* output) noexcept {
    while (count > 0) {
        const int run = std::min(count, windowSamples_ - writeIndex_);
        float* const ring = ring_.data() + writeIndex_;
        float head = head_;
        int i = 0;
        for (; i + 4 <= run; i += 4) {
            const float a = input[i];
            const float b = input[i + 1];
            const float c = input[i + 2];
            const float d = input[i + 3];
            const Heads heads(a, b, c, d);
            for (int k = 0; k < 4; ++k)
                output[i + k] = larger(larger(heads.upTo[k], head), ring[i + k + 1]);
            head = larger(heads.upTo[3], head);
            ring[i] = a;
            ring[i + 1] = b;
            ring[i + 2] = c;
            ring[i + 3] = d;
        }
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
