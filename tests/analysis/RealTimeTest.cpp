// What the audio thread may cost: no allocation, no system call but the exchange, no lost chunk
// behind a slow worker, and no data race with anything the host does meanwhile.
#include "AllocationCount.h"
#include "Signals.h"
#include "analysis/OrvelScope.h"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <set>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>

namespace Orvel {
namespace {

using orvel_test::PlainHost;
using orvel_test::Stereo;
using orvel_test::stereoNoise;

/// Process calls without anything around them that a host would not do on its audio thread.
class BareHost {
  public:
    explicit BareHost(COrvelScope& scope, int samples)
        : scope_(scope)
        , audio_(stereoNoise(samples, 5, 1.2F))
        , out_(audio_)
        , context_(inputs_, 2, outputs_, 2, nullptr, samples) {}
    void block() {
        scope_.process(context_);
        context_.setPpqPosition(context_.getPpqPosition() + 0.01);
    }

  private:
    COrvelScope& scope_;
    Stereo audio_;
    Stereo out_;
    float* inputs_[2] = {audio_.left.data(), audio_.right.data()};
    float* outputs_[2] = {out_.left.data(), out_.right.data()};
    Vardo::CProcessContext context_;
};

void playThroughAllModes(COrvelScope& scope, BareHost& host) {
    for (int page = 0; page < 4; ++page) {
        scope.setActivePage(page);
        for (int sync = 0; sync < 6; ++sync) {
            scope.scopeTiming().syncMode = sync;
            for (int i = 0; i < 10; ++i)
                host.block();
        }
    }
}

TEST(AudioThread, allocatesNothing) {
    if (!allocationsAreCounted()) GTEST_SKIP() << "the sanitizer has its own heap";
    for (const bool threaded : {false, true}) {
        for (const int mode : {0, 1, 2}) {
            COrvelScope scope(nullptr);
            scope.setThreadedProcessing(threaded);
            scope.parameter(kGlobalMeteringMode).setValue(static_cast<float>(mode));
            scope.setSampleRate(48000);
            scope.setBlockSize(512);
            scope.display().setWatched(true);
            for (SpectrumHandover& spectrum : scope.display().spectra)
                spectrum.setVisible(true);
            BareHost host(scope, 700);
            host.block();
            const std::size_t before = allocationsOfThisThread();
            playThroughAllModes(scope, host);
            scope.reset(); // on the audio thread, as some hosts do
            for (const ParameterId id :
                 {kGlobalInputGain, kScopeFreeze, kScopeDeEsserMale, kScopeDeEsserFemale})
                scope.parameter(id).setNormalizedValue(0.7, Vardo::kFromHost);
            EXPECT_EQ(allocationsOfThisThread() - before, 0U)
                << "threaded " << threaded << ", metering mode " << mode;
        }
    }
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)

/// From here on this thread dies of any system call but those of a lock or an event.
void forbidSystemCalls() {
    constexpr int kAllowed[] = {SYS_futex, SYS_sched_yield, SYS_exit_group};
    std::vector<sock_filter> filter;
    filter.push_back({BPF_LD | BPF_W | BPF_ABS, 0, 0, offsetof(seccomp_data, nr)});
    for (const int call : kAllowed) {
        filter.push_back({BPF_JMP | BPF_JEQ | BPF_K, 0, 1, static_cast<__u32>(call)});
        filter.push_back({BPF_RET | BPF_K, 0, 0, SECCOMP_RET_ALLOW});
    }
    filter.push_back({BPF_RET | BPF_K, 0, 0, SECCOMP_RET_KILL_PROCESS});
    const sock_fprog program{static_cast<unsigned short>(filter.size()), filter.data()};
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 ||
        prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) != 0)
        _exit(77);
}

[[noreturn]] void processWithoutSystemCalls(bool threaded, bool breakTheRule) {
    COrvelScope scope(nullptr);
    scope.setThreadedProcessing(threaded);
    scope.setSampleRate(48000);
    scope.setBlockSize(512);
    BareHost host(scope, 512);
    host.block();
    forbidSystemCalls();
    playThroughAllModes(scope, host);
    if (breakTheRule) (void)getppid();
    syscall(SYS_exit_group, 0);
    __builtin_unreachable();
}

TEST(AudioThreadDeathTest, makesNoSystemCallButTheExchangeAndTheSignal) {
    for (const bool threaded : {false, true})
        EXPECT_EXIT(processWithoutSystemCalls(threaded, false), testing::ExitedWithCode(0), "");
    EXPECT_EXIT(processWithoutSystemCalls(false, true), testing::KilledBySignal(SIGSYS), "")
        << "the filter would have caught one";
}

// ---- a worker that is held up

std::set<int> threadIds() {
    std::set<int> ids;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/task"))
        ids.insert(std::stoi(entry.path().filename().string()));
    return ids;
}

std::atomic<bool> holding{false};
std::atomic<bool> held{false};
void holdThread(int) {
    held = true;
    while (holding) {
    }
}

TEST(AudioThread, losesNoChunkBehindAWorkerThatIsHeldUp) {
    constexpr int kBlock = 480;
    constexpr int kBlocks = 100;
    const auto before = threadIds();
    COrvelScope scope(nullptr);
    scope.setThreadedProcessing(true);
    scope.parameter(kGlobalRMSLength).setValue(1000);
    const Stereo audio = stereoNoise(kBlock * kBlocks, 3);
    PlainHost host(scope, 48000, kBlock);
    auto worker = threadIds();
    for (const int id : before)
        worker.erase(id);
    ASSERT_EQ(worker.size(), 1U);

    std::signal(SIGUSR1, holdThread);
    holding = true;
    held = false;
    syscall(SYS_tgkill, getpid(), *worker.begin(), SIGUSR1);
    while (!held)
        std::this_thread::yield();

    std::atomic<int> done{0};
    std::atomic<bool> unchanged{true};
    std::thread audioThread([&] {
        for (int i = 0; i < kBlocks; ++i, ++done) {
            const Stereo out = host.block(audio, i * kBlock, kBlock);
            if (!std::equal(out.left.begin(), out.left.end(), audio.left.begin() + i * kBlock))
                unchanged = false;
        }
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    const int whileHeld = done;
    holding = false;
    audioThread.join();
    std::signal(SIGUSR1, SIG_DFL);

    EXPECT_EQ(whileHeld, 1) << "one chunk is with the worker, the next exchange waits for it";
    EXPECT_TRUE(unchanged);
    std::uint64_t sum = 0;
    for (const float x : audio.left)
        sum += static_cast<std::uint32_t>(x * 20000000.0F * x);
    EXPECT_EQ(host.read().levels[0].rms,
              static_cast<float>(std::sqrt(static_cast<double>(sum) / 2e7 / audio.size())));
}

#endif

// ---- everything at once; the thread sanitizer watches

TEST(Threads, mayDoEverythingWhileAudioRuns) {
    COrvelScope scope(nullptr);
    scope.setSampleRate(48000);
    scope.setBlockSize(64);
    std::atomic<bool> stop{false};

    std::thread audio([&] {
        BareHost small(scope, 48);
        BareHost large(scope, 300);
        while (!stop) {
            small.block();
            large.block();
        }
    });
    std::thread automation([&] {
        std::mt19937 generator(2);
        while (!stop) {
            auto& parameter =
                scope.parameter(static_cast<ParameterId>(generator() % kNumParameters));
            if (parameter.isAutomatable())
                parameter.setNormalizedValue(static_cast<double>(generator() % 100) / 99,
                                             Vardo::kFromHost);
            Core::CStringBufferd<64> text;
            parameter.getDisplayText(0.5, text);
        }
    });
    std::thread views([&] {
        float highest = 0;
        SpectrumFrame frame;
        std::vector<Sorel::ScopeColumn> columns(200);
        auto points = std::make_unique<std::array<GoniometerPoint, GoniometerStream::kNumPoints>>();
        for (SpectrumHandover& spectrum : scope.display().spectra)
            spectrum.setVisible(true);
        while (!stop) {
            for (MeterDisplay& meter : scope.display().meters)
                highest = std::max(highest, meter.hold.take());
            for (const auto& count : scope.display().histograms[0].counts)
                highest = std::max(highest, static_cast<float>(count.load()));
            (void)scope.transport().position();
            for (SpectrumHandover& spectrum : scope.display().spectra)
                if (spectrum.take(frame)) spectrum.setConsumed();
            scope.scopeTable().TryLock();
            scope.scopeTable().GetLayerData(1, columns.data(), static_cast<int>(columns.size()));
            scope.display().goniometer.read(*points);
        }
        EXPECT_GT(highest, 0);
    });

    // The host's main thread.
    scope.display().setWatched(true);
    std::mt19937 generator(1);
    Vardo::AnalysisSnapshot snapshot;
    for (int round = 0; round < 400; ++round) {
        const auto below = [&](unsigned end) { return static_cast<int>(generator() % end); };
        const auto set = [&](ParameterId id, int plain) {
            scope.parameter(id).setValue(static_cast<float>(plain));
        };
        const int what = round % 8;
        if (what == 0) scope.setBlockSize(16 + below(500));
        if (what == 1) scope.setSampleRate(8000 + below(90000));
        if (what == 2) {
            void* data = nullptr;
            const int size = scope.getChunk(&data);
            scope.setChunk(data, size);
        }
        if (what == 3) scope.reset();
        if (what == 4) scope.setThreadedProcessing(below(2) == 0);
        if (what == 5) scope.readAnalysis(snapshot);
        if (what == 6) set(kGlobalRMSLength, below(1000));
        if (what == 7) {
            scope.setActivePage(below(4));
            set(kGlobalMeteringMode, below(5));
            set(kSpectrumFFTSize, below(4));
            scope.setBypass(below(2) == 0);
            scope.onIdle();
        }
    }
    stop = true;
    audio.join();
    automation.join();
    views.join();
    scope.readAnalysis(snapshot);
    EXPECT_GT(snapshot.slices, 0);
}

} // namespace
} // namespace Orvel
