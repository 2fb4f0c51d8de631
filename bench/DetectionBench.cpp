// What do the detectors cost per sample, and does it grow with the sample rate?
// One iteration is one second of audio in slices of a millisecond; `per_sample` is the answer.
#include "analysis/BufferMaxEnvelope.h"
#include "analysis/SibilanceDetector.h"
#include "analysis/TransientDetector.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

namespace {

struct Audio {
    explicit Audio(std::int64_t sampleRate, float amplitude = 0.2F)
        : left(static_cast<std::size_t>(sampleRate))
        , right(left.size())
        , output(left.size())
        , slice(static_cast<int>(sampleRate / 1000)) {
        std::mt19937 generator(1);
        std::normal_distribution<float> normal(0, 1);
        for (std::size_t i = 0; i < left.size(); ++i) {
            left[i] = normal(generator) * amplitude;
            right[i] = normal(generator) * amplitude;
        }
    }
    /// Calls `measure` with the offset and length of each slice.
    template <typename Measure>
    void forEachSlice(Measure measure) {
        const int size = static_cast<int>(left.size());
        for (int at = 0; at < size; at += slice)
            measure(static_cast<std::size_t>(at), std::min(slice, size - at));
        benchmark::ClobberMemory();
    }
    std::vector<float> left, right, output;
    int slice;
};

void countSamples(benchmark::State& state, std::int64_t perIteration) {
    using benchmark::Counter;
    state.counters["per_sample"] = Counter(static_cast<double>(state.iterations() * perIteration),
                                           Counter::kIsRate | Counter::kInvert);
}

void rates(benchmark::internal::Benchmark* bench) { bench->Arg(44100)->Arg(96000)->Arg(384000); }

void slidingMaximum(benchmark::State& state) {
    Audio audio(state.range(0));
    Orvel::CBufferMaxEnvelope envelope;
    envelope.setSampleRate(static_cast<float>(state.range(0)));
    for (auto _ : state)
        audio.forEachSlice([&](std::size_t at, int count) {
            envelope.process(&audio.left[at], count, &audio.output[at]);
        });
    countSamples(state, state.range(0));
}
BENCHMARK(slidingMaximum)->Apply(rates);

/// The plain twin: a ring that is searched from end to end for every sample.
void slidingMaximumByBruteForce(benchmark::State& state) {
    Audio audio(state.range(0));
    std::vector<float> ring(audio.left.size() / 100);
    std::size_t write = 0;
    // A tenth of a second is enough.
    const std::size_t samples = audio.left.size() / 10;
    for (auto _ : state)
        for (std::size_t i = 0; i < samples; ++i) {
            ring[write] = audio.left[i];
            write = write + 1 == ring.size() ? 0 : write + 1;
            audio.output[i] = *std::max_element(ring.begin(), ring.end());
            benchmark::ClobberMemory();
        }
    countSamples(state, static_cast<std::int64_t>(samples));
}
BENCHMARK(slidingMaximumByBruteForce)->Apply(rates);

void transients(benchmark::State& state) {
    Audio audio(state.range(0));
    Orvel::CTransientDetector detector;
    detector.setSampleRate(static_cast<float>(state.range(0)));
    for (auto _ : state)
        audio.forEachSlice([&](std::size_t at, int count) {
            benchmark::DoNotOptimize(
                detector.process(&audio.left[at], &audio.right[at], count, &audio.output[at]));
        });
    countSamples(state, state.range(0));
}
BENCHMARK(transients)->Apply(rates);

void runSibilance(benchmark::State& state, Audio& audio, Orvel::SibilanceDetector& detector) {
    for (auto _ : state)
        audio.forEachSlice([&](std::size_t at, int count) {
            detector.process(&audio.left[at], &audio.right[at], count, &audio.output[at]);
        });
    countSamples(state, state.range(0));
}

Orvel::SibilanceDetector makeSibilance(std::int64_t sampleRate) {
    Orvel::SibilanceDetector detector;
    detector.setSampleRate(static_cast<float>(sampleRate));
    detector.setVoice(Orvel::SibilanceVoice::male);
    return detector;
}

void sibilance(benchmark::State& state) {
    Audio audio(state.range(0));
    auto detector = makeSibilance(state.range(0));
    runSibilance(state, audio, detector);
}
BENCHMARK(sibilance)->Apply(rates);

/// Denormal numbers would show here.
void sibilanceInSilenceAfterMusic(benchmark::State& state) {
    Audio music(state.range(0));
    auto detector = makeSibilance(state.range(0));
    music.forEachSlice([&](std::size_t at, int count) {
        detector.process(&music.left[at], &music.right[at], count, &music.output[at]);
    });
    Audio silence(state.range(0), 0);
    runSibilance(state, silence, detector);
}
BENCHMARK(sibilanceInSilenceAfterMusic)->Apply(rates);

} // namespace
