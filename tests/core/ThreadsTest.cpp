// Events, the persistent worker, the lock and the gate, hammered from several threads.
#include "core/CriticalSection.h"
#include "core/PersistentThread.h"
#include "core/RealtimeGate.h"
#include "core/ThreadEvent.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <thread>
#include <utility>
#include <vector>

using namespace Core::Threads;
using namespace std::chrono_literals;

namespace {
class Worker : public IPersistentThreadCallback {
  public:
    explicit Worker(std::function<void(int)> work)
        : work_(std::move(work)) {}
    void threadFunction(int argument) override { work_(argument); }

  private:
    std::function<void(int)> work_;
};

bool eventually(const std::function<bool()>& condition) {
    const auto deadline = std::chrono::steady_clock::now() + 20s;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) return false;
        std::this_thread::sleep_for(100us);
    }
    return true;
}
} // namespace

TEST(ThreadEvent, NoWakeUpIsLostInAPingPong) {
    // Each side sleeps until the other has answered; one lost wake-up hangs the test.
    ThreadEvent ping;
    ThreadEvent pong;
    constexpr int kRounds = 20000;
    int shared = 0; // ordered by the events alone: the thread sanitizer checks that
    std::thread other([&] {
        for (int i = 0; i < kRounds; ++i) {
            ping.wait();
            ping.reset();
            ++shared;
            pong.set();
        }
    });
    for (int i = 0; i < kRounds; ++i) {
        ping.set();
        pong.wait();
        pong.reset();
        EXPECT_EQ(shared, i + 1);
    }
    other.join();
}

TEST(PersistentThread, EverySignalIsSeen) {
    // The worker may merge signals, but after the last one it must run once more with it.
    std::atomic<int> seen{-1};
    Worker worker([&](int argument) { seen = argument; });
    CPersistentThread thread(&worker);
    ASSERT_TRUE(thread.isRunning());
    for (int i = 0; i < 5000; ++i) {
        thread.signal(i);
        if (i % 3 == 0) {
            ASSERT_TRUE(eventually([&] { return seen == i; })) << "signal " << i << " lost";
        }
    }
    EXPECT_TRUE(eventually([&] { return seen == 4999; }));
}

TEST(PersistentThread, StopWaitsForTheWorkAndIsFinal) {
    std::atomic<int> runs{0};
    std::atomic<bool> inside{false};
    Worker worker([&](int) {
        inside = true;
        std::this_thread::sleep_for(30ms);
        ++runs;
        inside = false;
    });
    CPersistentThread thread(&worker);
    thread.signal(1);
    ASSERT_TRUE(eventually([&] { return inside.load(); }));
    thread.stop();
    EXPECT_FALSE(inside);
    EXPECT_EQ(runs, 1);
    EXPECT_FALSE(thread.isRunning());
    thread.signal(2);
    thread.stop();
    std::this_thread::sleep_for(5ms);
    EXPECT_EQ(runs, 1) << "a callback ran after stop";
}

TEST(PersistentThread, LivesAreShort) {
    // Ended before its first wait, in its wait, and with a signal on its way.
    std::atomic<int> runs{0};
    Worker worker([&](int) { ++runs; });
    for (int i = 0; i < 300; ++i) {
        CPersistentThread thread(&worker);
        if (i % 3 == 1) thread.signal(i);
        if (i % 3 == 2) std::this_thread::yield();
    }
    const int atEnd = runs;
    EXPECT_LE(atEnd, 100);
    std::this_thread::sleep_for(5ms);
    EXPECT_EQ(runs, atEnd);
}

TEST(CriticalSection, ExcludesUnderContention) {
    CriticalSection section;
    long counter = 0;
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&] {
            for (int i = 0; i < 5000; ++i) {
                const ScopedLock outer(section);
                const ScopedLock inner(section);
                const long before = counter;
                if (i % 500 == 0) std::this_thread::sleep_for(1ms); // the others stop spinning
                counter = before + 1;
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(counter, 20000);
}

TEST(RealtimeGate, ExcludesAndLetsBothSidesThrough) {
    RealtimeGate gate;
    long counter = 0; // a plain number: a race here is a race in the gate
    std::atomic<bool> stop{false};
    std::atomic<long> entered{0};
    std::thread audio([&] {
        while (!stop)
            if (gate.tryEnter()) {
                ++counter;
                ++entered;
                gate.leave();
            }
    });
    constexpr int kRebuilds = 200;
    for (int i = 0; i < kRebuilds; ++i) {
        std::this_thread::sleep_for(20us); // the audio thread's turn
        const GateHold hold(gate);
        const long before = counter;
        std::this_thread::sleep_for(20us);
        EXPECT_EQ(counter, before) << "the audio thread was inside with us";
        ++counter;
    }
    EXPECT_TRUE(eventually([&] { return entered > 0; }));
    stop = true;
    audio.join();
    EXPECT_EQ(counter, entered + kRebuilds);
}
