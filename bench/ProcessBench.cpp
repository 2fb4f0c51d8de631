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
#include <chrono>
#include <cstdlib>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kChunk = 4096; // the longest block of the series; also used as block size = chunk

/// Lets the other core go to sleep, without counting.
void letWorkerSleep() {
    const auto until = Clock::now() + std::chrono::microseconds(60);
    while (Clock::now() < until) {
    }
}

double seconds(Clock::duration time) { return std::chrono::duration<double>(time).count(); }

struct Audio {
    explicit Audio(int samples) {
        for (auto& channel : channels) channel.assign(static_cast<std::size_t>(samples), 0.25F);
        for (std::size_t i = 0; i < channels.size(); ++i) pointers[i] = channels[i].data();
    }
    std::array<std::vector<float>, 6> channels; // in, out, capture: two each
    std::array<float*, 6> pointers{};
};

/// The least: input to output and input to capture, then wake a worker that does nothing.
struct IdleWorker : Core::Threads::IPersistentThreadCallback {
    void threadFunction(int) override {}
};

void copyAndSignal(benchmark::State& state) {
    const int block = static_cast<int>(state.range(0));
    const int chunk = static_cast<int>(state.range(1));
    Audio audio(chunk);
    IdleWorker work;
    Core::Threads::CPersistentThread worker(&work);
    int filled = 0;
    for (auto _ : state) {
        if (filled == 0) letWorkerSleep();
        const auto start = Clock::now();
        for (std::size_t c = 0; c < 2; ++c) {
            std::copy_n(audio.pointers[c], block, audio.pointers[2 + c]);
            std::copy_n(audio.pointers[c], block, audio.pointers[4 + c] + filled);
        }
        benchmark::DoNotOptimize(audio.pointers.data());
        benchmark::ClobberMemory();
        filled += block;
        if (filled >= chunk) {
            worker.signal(0);
            filled = 0;
        }
        state.SetIterationTime(seconds(Clock::now() - start));
    }
}

void process(benchmark::State& state) {
    const int block = static_cast<int>(state.range(0));
    const int chunk = static_cast<int>(state.range(1));
    Audio audio(chunk);
    Orvel::COrvelScope scope(nullptr);
    scope.setThreadedProcessing(true);
    scope.setSampleRate(48000);
    scope.setBlockSize(chunk);
    Vardo::CProcessContext context(
        &audio.pointers[0], 2, &audio.pointers[2], 2, nullptr, block);
    Vardo::AnalysisSnapshot snapshot;
    int filled = 0;
    for (auto _ : state) {
        if (filled == 0) {
            scope.readAnalysis(snapshot); // waits for the worker
            letWorkerSleep();
        }
        const auto start = Clock::now();
        scope.process(context);
        state.SetIterationTime(seconds(Clock::now() - start));
        filled += block;
        if (filled >= chunk) filled = 0;
    }
}

void blocks(benchmark::internal::Benchmark* bench) {
    for (int block = 32; block <= kChunk; block *= 2) bench->Args({block, block});
    // A host with small blocks inside a larger announced size.
    bench->Args({32, 512})->Args({64, 1024});
    bench->ArgNames({"block", "chunk"})->UseManualTime()->Unit(benchmark::kNanosecond);
}

BENCHMARK(copyAndSignal)->Apply(blocks);
BENCHMARK(process)->Apply(blocks);

// The settings of whoever runs this are left alone.
const bool privateSettings = [] {
    setenv("XDG_CONFIG_HOME", "/tmp/orvel-bench-config", 1);
    return true;
}();

} // namespace
