// Calls for audio as a sound card would, where there is none.
#include "SilentClock.h"

#include <algorithm>
#include <chrono>

namespace Standalone {

namespace {
constexpr double kSecondsPerCall = 0.0125; // half a picture: what scrolls moves evenly
// After a longer sleep of the machine the lost time is not made up for.
constexpr auto kLongestDelay = std::chrono::milliseconds(200);
} // namespace

SilentClock::SilentClock(IAudioClient& client, double sampleRate)
    : client_(client)
    , sampleRate_(sampleRate)
    , frames_(std::max(1, static_cast<int>(sampleRate * kSecondsPerCall)))
    , left_(static_cast<std::size_t>(frames_))
    , right_(left_.size()) {
    client_.prepare(sampleRate_, frames_);
    thread_ = std::thread([this] { run(); });
}

SilentClock::~SilentClock() {
    {
        const std::lock_guard lock(mutex_);
        stopping_ = true;
    }
    wake_.notify_one();
    thread_.join();
}

void SilentClock::run() {
    using Clock = std::chrono::steady_clock;
    AudioBlock block;
    block.outputs[0] = left_.data();
    block.outputs[1] = right_.data();
    block.frames = frames_;

    Clock::time_point start = Clock::now();
    double played = 0; // frames since start
    std::unique_lock lock(mutex_);
    while (!stopping_) {
        const auto due = start + std::chrono::duration_cast<Clock::duration>(
                                     std::chrono::duration<double>(played / sampleRate_));
        if (wake_.wait_until(lock, due, [this] { return stopping_; })) break;
        if (Clock::now() - due > kLongestDelay) {
            start = Clock::now();
            played = 0;
        }
        lock.unlock();
        client_.process(block);
        lock.lock();
        played += frames_;
    }
}

} // namespace Standalone
