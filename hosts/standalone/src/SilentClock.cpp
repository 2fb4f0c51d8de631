// Calls for audio as a sound card would, where there is none.
#include "SilentClock.h"

#include "PictureBeat.h"

#include <chrono>
#include <cmath>

namespace Standalone {

namespace {
// After a longer sleep of the machine the lost time is not made up for.
constexpr auto kLongestDelay = std::chrono::milliseconds(200);
constexpr double kSecondsPerCall = std::chrono::duration<double>(PictureBeat::kPeriod).count();
} // namespace

SilentClock::SilentClock(IAudioClient& client, double sampleRate)
    : client_(client)
    , framesPerCall_(sampleRate * kSecondsPerCall)
    , left_(static_cast<std::size_t>(std::ceil(framesPerCall_)))
    , right_(left_.size()) {
    client_.prepare(sampleRate, static_cast<int>(left_.size()));
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
    using Clock = PictureBeat::Clock;
    AudioBlock block;
    block.outputs[0] = left_.data();
    block.outputs[1] = right_.data();

    Clock::time_point due = PictureBeat::nextSilentBlock(Clock::now());
    double owed = 0; // frames: less than one is left for the next call
    std::unique_lock lock(mutex_);
    while (!wake_.wait_until(lock, due, [this] { return stopping_; })) {
        if (Clock::now() - due > kLongestDelay) due = PictureBeat::nextSilentBlock(Clock::now());
        due += PictureBeat::kPeriod;
        owed += framesPerCall_;
        block.frames = static_cast<int>(owed);
        owed -= block.frames;
        lock.unlock();
        client_.process(block);
        lock.lock();
    }
}

} // namespace Standalone
