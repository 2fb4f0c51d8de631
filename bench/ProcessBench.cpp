// What does `process` cost the audio thread with threading on, against what it cannot do without:
// the copies and one signal to a sleeping worker per chunk?
//
// Both sides are timed alone: between two calls the worker gets the time to finish and fall asleep,
// as it has in a host, where the next block comes milliseconds later.
#include "analysis/OrvelScope.h"
#include "core/PersistentThread.h"
#include "frame/ProcessContext.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <optional>
#include <sched.h>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

/// Gives the other core the time to fall asleep for good, as it has between two blocks of a host: a
/// core that has only just become idle still looks out for work and is woken for less.
void letWorkerSleep() {
    const auto until = Clock::now() + std::chrono::microseconds(400);
    while (Clock::now() < until) {
    }
}

double seconds(Clock::duration time) { return std::chrono::duration<double>(time).count(); }

struct Audio {
    explicit Audio(int samples) {
        for (auto& channel : channels)
            channel.assign(static_cast<std::size_t>(samples), 0.25F);
        for (std::size_t i = 0; i < channels.size(); ++i)
            pointers[i] = channels[i].data();
    }
    std::array<std::vector<float>, 6> channels; // in, out, capture: two each
    std::array<float*, 6> pointers{};
};

/// The least: input to output and input to capture, then wake a worker that does nothing.
struct IdleWorker : Core::Threads::IPersistentThreadCallback {
    void threadFunction(int) override {}
};

/// Median of many: what the machine does beside us falls on both sides' tails.
double median(std::vector<double>& times) {
    const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
    std::nth_element(times.begin(), middle, times.end());
    return *middle;
}

/// Threads made while this lives run on another core than the one this thread goes on with, so that
/// both sides pay for waking a worker elsewhere and none is lucky.
class OtherCore {
  public:
    OtherCore() { moveTo(1); }
    ~OtherCore() { moveTo(0); }

  private:
    static void moveTo(int core) {
        cpu_set_t cores;
        CPU_ZERO(&cores);
        CPU_SET(core, &cores);
        (void)sched_setaffinity(0, sizeof cores, &cores); // one core only: no lottery to avoid
    }
};

/// One chunk per iteration, in host blocks, by each side in turn.
void processAgainstCopiesAndSignal(benchmark::State& state) {
    const int block = static_cast<int>(state.range(0));
    const int chunk = static_cast<int>(state.range(1));
    Audio audio(chunk);
    Vardo::CProcessContext context(&audio.pointers[0], 2, &audio.pointers[2], 2, nullptr, block);

    IdleWorker nothing;
    std::optional<OtherCore> elsewhere(std::in_place);
    Core::Threads::CPersistentThread worker(&nothing);
    Orvel::COrvelScope scope(nullptr);
    elsewhere.reset();
    scope.setThreadedProcessing(true);
    scope.setSampleRate(48000);
    scope.setBlockSize(chunk);
    Vardo::AnalysisSnapshot snapshot;

    std::vector<double> least;
    std::vector<double> ours;
    for (auto _ : state) {
        scope.readAnalysis(snapshot); // waits for the analysis of the last chunk
        letWorkerSleep();
        const auto leastStart = Clock::now();
        for (int filled = 0; filled < chunk; filled += block) {
            for (std::size_t c = 0; c < 2; ++c) {
                std::copy_n(audio.pointers[c], block, audio.pointers[2 + c]);
                std::copy_n(audio.pointers[c], block, audio.pointers[4 + c] + filled);
            }
            benchmark::ClobberMemory();
        }
        worker.signal(0);
        least.push_back(seconds(Clock::now() - leastStart));

        letWorkerSleep();
        const auto start = Clock::now();
        for (int filled = 0; filled < chunk; filled += block)
            scope.process(context);
        ours.push_back(seconds(Clock::now() - start));
        state.SetIterationTime(ours.back());
    }
    state.counters["least_ns"] = median(least) * 1e9;
    state.counters["process_ns"] = median(ours) * 1e9;
    state.counters["ratio"] = median(ours) / median(least);
}

void blocks(benchmark::internal::Benchmark* bench) {
    for (int block = 32; block <= 4096; block *= 2)
        bench->Args({block, block});
    // Hosts with small blocks inside a larger announced size.
    bench->Args({32, 512})->Args({64, 1024});
    bench->ArgNames({"block", "chunk"})->UseManualTime()->Iterations(2000);
}

BENCHMARK(processAgainstCopiesAndSignal)->Apply(blocks);

// The settings of whoever runs this are left alone.
const bool privateSettings = [] {
    setenv("XDG_CONFIG_HOME", "/tmp/orvel-bench-config", 1);
    return true;
}();

} // namespace
