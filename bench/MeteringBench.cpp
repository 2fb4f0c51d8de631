// How much faster than real time are levels measured, on one core, at 48 kHz?
// One iteration is one second of audio in slices of a millisecond; `x_realtime` is the answer.
#include "analysis/LevelMetering.h"
#include "kernels/Kernels.h"

#include <benchmark/benchmark.h>

#include <random>
#include <vector>

namespace {

using Orvel::LevelMetering;
using Orvel::MeteringMode;

constexpr int kRate = 48000;
constexpr int kSlice = 48;

struct Second {
    Second() {
        std::mt19937 generator(1);
        std::normal_distribution<float> normal(0, 0.2F);
        for (auto* channel : {&left, &right, &mid, &side, &max})
            channel->resize(kRate);
        for (std::size_t i = 0; i < left.size(); ++i) {
            left[i] = normal(generator);
            right[i] = normal(generator);
        }
        inputLeft = left;
        inputRight = right;
    }
    std::vector<float> inputLeft, inputRight, left, right, mid, side, max;
};

void measureSecond(Second& audio, LevelMetering& metering, MeteringMode mode, bool allChannels) {
    for (std::size_t at = 0; at < kRate; at += kSlice) {
        Orvel::Slice slice;
        slice.count = kSlice;
        Orvel::kernels().conditionInput(&audio.inputLeft[at], kSlice, 1, &audio.left[at]);
        Orvel::kernels().conditionInput(&audio.inputRight[at], kSlice, 1, &audio.right[at]);
        Orvel::kernels().formChannels(&audio.left[at], &audio.right[at], kSlice, &audio.mid[at],
                                      &audio.side[at], &audio.max[at], slice.peaks);
        const float* const channels[] = {&audio.left[at], &audio.right[at], &audio.mid[at],
                                         &audio.side[at], &audio.max[at]};
        std::copy(std::begin(channels), std::end(channels), slice.channels);
        metering.measure(slice, mode, allChannels);
    }
}

void levels(benchmark::State& state, MeteringMode mode, bool allChannels) {
    Second audio;
    LevelMetering metering;
    metering.setSampleRate(kRate);
    metering.setRmsLength(500);
    for (auto _ : state)
        measureSecond(audio, metering, mode, allChannels);
    state.counters["x_realtime"] =
        benchmark::Counter(static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}

BENCHMARK_CAPTURE(levels, peak_and_rms_of_left_and_right, MeteringMode::peak, false);
BENCHMARK_CAPTURE(levels, peak_and_rms_with_mid_and_side, MeteringMode::peak, true);
BENCHMARK_CAPTURE(levels, histogram_of_five_channels, MeteringMode::histogram, true);

/// The loops alone: peak, overs and RMS of two channels, without ballistics.
void kernelsAlone(benchmark::State& state, const Orvel::Kernels* kernels) {
    if (kernels == nullptr) {
        state.SkipWithError("not on this processor");
        return;
    }
    Second audio;
    std::vector<std::uint32_t> ring(kRate);
    std::uint64_t sum = 0;
    for (auto _ : state) {
        float peaks[5];
        for (std::size_t at = 0; at < kRate; at += kSlice) {
            kernels->formChannels(&audio.left[at], &audio.right[at], kSlice, &audio.mid[at],
                                  &audio.side[at], &audio.max[at], peaks);
            sum += kernels->slideSquares(&audio.left[at], kSlice, &ring[at]);
            sum += kernels->slideSquares(&audio.right[at], kSlice, &ring[at]);
        }
        benchmark::DoNotOptimize(sum);
    }
    state.counters["x_realtime"] =
        benchmark::Counter(static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}

BENCHMARK_CAPTURE(kernelsAlone, baseline, &Orvel::kBaselineKernels);
BENCHMARK_CAPTURE(kernelsAlone, avx2, Orvel::avx2Kernels());

} // namespace
