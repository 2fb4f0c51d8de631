// What does each measuring member cost, in nanoseconds per sample, and how does that grow with the
// sample rate? One iteration is a second of noise in slices of a millisecond.
#include "analysis/CorrelationBlock.h"
#include "analysis/GoniometerStream.h"
#include "analysis/LevelMetering.h"
#include "analysis/ScopeDataProviderSync.h"
#include "analysis/SibilanceDetector.h"
#include "analysis/SpectrumAnalyser.h"
#include "analysis/TransientDetector.h"
#include "kernels/Kernels.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <functional>
#include <random>
#include <vector>

namespace {

using Orvel::Slice;

/// A second of stereo noise, and the five channels of one slice at a time.
class Second {
  public:
    explicit Second(int rate)
        : rate_(rate)
        , slice_(rate / 1000) {
        std::mt19937 generator(1);
        std::normal_distribution<float> normal(0, 0.2F);
        for (auto* channel : {&left_, &right_, &mid_, &side_, &max_})
            channel->resize(static_cast<std::size_t>(rate));
        for (std::size_t i = 0; i < left_.size(); ++i) {
            left_[i] = normal(generator);
            right_[i] = normal(generator);
        }
    }

    void forEachSlice(const std::function<void(const Slice&)>& use) {
        for (int at = 0; at + slice_ <= rate_; at += slice_) {
            Slice slice;
            slice.count = slice_;
            const auto i = static_cast<std::size_t>(at);
            Orvel::kernels().formChannels(&left_[i], &right_[i], slice_, &mid_[i], &side_[i],
                                          &max_[i], slice.peaks);
            const float* const channels[] = {&left_[i], &right_[i], &mid_[i], &side_[i], &max_[i]};
            std::copy(std::begin(channels), std::end(channels), slice.channels);
            use(slice);
        }
    }

  private:
    int rate_;
    int slice_;
    std::vector<float> left_, right_, mid_, side_, max_;
};

void timePerSample(benchmark::State& state, const std::function<void(const Slice&)>& use) {
    const int rate = static_cast<int>(state.range(0));
    Second second(rate);
    const auto start = std::chrono::steady_clock::now();
    for (auto _ : state)
        second.forEachSlice(use);
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
    state.counters["ns_per_sample"] =
        elapsed.count() * 1e9 / (static_cast<double>(state.iterations()) * rate);
}

float rateOf(const benchmark::State& state) { return static_cast<float>(state.range(0)); }

void formingChannels(benchmark::State& state) {
    timePerSample(state, [](const Slice&) {});
}

void levels(benchmark::State& state) {
    Orvel::LevelMetering metering;
    metering.setSampleRate(rateOf(state));
    metering.setRmsLength(500);
    timePerSample(state, [&](const Slice& slice) {
        metering.measure(slice, Orvel::MeteringMode::peak, false);
    });
}

void histogram(benchmark::State& state) {
    Orvel::LevelMetering metering;
    metering.setSampleRate(rateOf(state));
    metering.setRmsLength(500);
    timePerSample(state, [&](const Slice& slice) {
        metering.measure(slice, Orvel::MeteringMode::histogram, false);
    });
}

void transients(benchmark::State& state) {
    Orvel::CTransientDetector detector;
    detector.setSampleRate(rateOf(state));
    std::vector<float> marks(1536);
    timePerSample(state, [&](const Slice& slice) {
        detector.process(slice.left(), slice.right(), slice.count, marks.data());
    });
}

void sibilance(benchmark::State& state) {
    Orvel::SibilanceDetector detector;
    detector.setSampleRate(rateOf(state));
    detector.setVoice(Orvel::SibilanceVoice::male);
    std::vector<float> envelope(1536);
    timePerSample(state, [&](const Slice& slice) {
        detector.process(slice.left(), slice.right(), slice.count, envelope.data());
    });
}

void scopeTable(benchmark::State& state) {
    Orvel::CScopeDataProvider_Sync provider;
    provider.SetNumLayers(6);
    provider.SetNumColumns(845);
    provider.SetSampleRate(rateOf(state));
    provider.SetVisibleTime(5000);
    timePerSample(state, [&](const Slice& slice) {
        const Sorel::ScopeLayerInput both{2, 4, slice.left(), slice.right()};
        const Sorel::ScopeLayerInput one{1, 0, slice.left(), nullptr};
        const Sorel::ScopeLayerInput* const inputs[] = {&both, &one, &one, &one, &one, &one};
        provider.Process(inputs, slice.count);
    });
}

void spectrum(benchmark::State& state) {
    Orvel::SpectrumAnalyser analyser;
    analyser.configure(rateOf(state), 3, 16);
    timePerSample(state, [&](const Slice& slice) { analyser.feed(slice); });
}

void correlation(benchmark::State& state) {
    Orvel::CorrelationBlock block;
    block.setSampleRate(rateOf(state));
    timePerSample(
        state, [&](const Slice& slice) { block.feed(slice.left(), slice.right(), slice.count); });
}

void goniometer(benchmark::State& state) {
    Orvel::GoniometerStream stream;
    timePerSample(
        state, [&](const Slice& slice) { stream.push(slice.left(), slice.right(), slice.count); });
}

void rates(benchmark::internal::Benchmark* bench) {
    bench->ArgName("rate")->Unit(benchmark::kMillisecond);
    for (const int rate : {44100, 96000, 192000, 384000})
        bench->Arg(rate);
}

BENCHMARK(formingChannels)->Apply(rates); // part of all below
BENCHMARK(levels)->Apply(rates);
BENCHMARK(histogram)->Apply(rates);
BENCHMARK(transients)->Apply(rates);
BENCHMARK(sibilance)->Apply(rates);
BENCHMARK(scopeTable)->Apply(rates);
BENCHMARK(spectrum)->Apply(rates);
BENCHMARK(correlation)->Apply(rates);
BENCHMARK(goniometer)->Apply(rates);

} // namespace
