// Reading ahead: every frame in its place, around the end, through seeks and past damage.
#include "FileStream.h"
#include "FakePlugin.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <random>
#include <thread>
#include <vector>

namespace Standalone {
namespace {

/// Takes one run, waiting for the reading thread, and looks at each sample.
FileStream::Run takeChecked(FileStream& stream, int most) {
    std::vector<float> left(static_cast<std::size_t>(most));
    std::vector<float> right(left.size());
    FileStream::Run run;
    while ((run = stream.read(left.data(), right.data(), most)).frames == 0)
        std::this_thread::yield();
    for (int i = 0; i < run.frames; ++i) {
        const float expected = Ramp::valueAt(run.position + i);
        EXPECT_EQ(left[static_cast<std::size_t>(i)], expected);
        EXPECT_EQ(right[static_cast<std::size_t>(i)], -expected);
    }
    return run;
}

TEST(FileStream, PlaysRoundAndRoundWithoutLosingAFrame) {
    std::mt19937 random(7);
    for (const int length : {1, 10, 511, 512, 513, 100000}) {
        FileStream stream(std::make_unique<Ramp>(length));
        std::int64_t expected = 0;
        for (std::int64_t taken = 0; taken < std::min(5 * length, 300000);) {
            const FileStream::Run run = takeChecked(stream, 1 + static_cast<int>(random() % 700));
            ASSERT_EQ(run.position, expected) << length;
            expected = (expected + run.frames) % length;
            taken += run.frames;
        }
        EXPECT_EQ(stream.position() % length, expected);
    }
}

TEST(FileStream, SeeksFromAnotherThreadNeverMixPlaces) {
    constexpr int kLength = 1000000;
    FileStream stream(std::make_unique<Ramp>(kLength));
    std::atomic<bool> stop{false};
    std::thread audio([&] {
        std::mt19937 random(1);
        while (!stop)
            takeChecked(stream, 1 + static_cast<int>(random() % 300));
    });
    std::mt19937 random(2);
    for (int i = 0; i < 200; ++i) {
        const auto target = static_cast<std::int64_t>(random() % kLength);
        stream.seek(target);
        // At once the new place, and from there on: seeks add up.
        const std::int64_t ahead = (stream.position() - target + kLength) % kLength;
        EXPECT_LT(ahead, kLength / 2);
        if (i % 3 == 0) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    stop = true;
    audio.join();

    for (const auto& [wanted, found] : {std::pair{777, 777}, {-5, 0}, {kLength + 5, kLength - 1}}) {
        stream.seek(wanted);
        EXPECT_EQ(takeChecked(stream, 100).position, found);
    }
}

TEST(FileStream, TellsOfDamageAndStartsOver) {
    auto damaged = std::make_unique<Ramp>(5000);
    damaged->damagedAt = 2000;
    FileStream stream(std::move(damaged));
    EXPECT_EQ(stream.takeProblem(), "damaged");
    std::int64_t last = 0;
    for (int i = 0; i < 50; ++i)
        last = std::max(last, takeChecked(stream, 512).position);
    EXPECT_LT(last, 2000);

    auto hopeless = std::make_unique<Ramp>(5000);
    hopeless->damagedAt = 0;
    EXPECT_THROW(FileStream{std::move(hopeless)}, UserError);
}

} // namespace
} // namespace Standalone
