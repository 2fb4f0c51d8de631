// What does a spectrum frame cost beside a bare transform, and what does the rest of a spectrum?
// `ratio` is the answer: one frame of two channels (ring in time order, window, transform, decibels
// of all bins that can move), per channel, over one bare real FFTW transform with a measured plan.
#include "analysis/SpectrumAnalyser.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <fftw3.h>
#include <random>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

double microsecondsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::micro>(Clock::now() - start).count();
}

/// As fast as FFTW can: measured plan, input of its choice of alignment, nothing else.
class BareTransform {
  public:
    explicit BareTransform(int size)
        : in_(fftwf_alloc_real(static_cast<std::size_t>(size)))
        , out_(fftwf_alloc_complex(static_cast<std::size_t>(size / 2 + 1)))
        , plan_(fftwf_plan_dft_r2c_1d(size, in_, out_, FFTW_MEASURE)) {
        std::mt19937 generator(1);
        std::normal_distribution<float> normal(0, 0.2F);
        std::generate_n(in_, size, [&] { return normal(generator); });
    }
    ~BareTransform() {
        fftwf_destroy_plan(plan_);
        fftwf_free(in_);
        fftwf_free(out_);
    }
    BareTransform(const BareTransform&) = delete;
    BareTransform& operator=(const BareTransform&) = delete;
    void run() {
        fftwf_execute(plan_);
        benchmark::ClobberMemory();
    }

  private:
    float* in_;
    fftwf_complex* out_;
    fftwf_plan plan_;
};

/// An analyser of noise, fed in slices of 48 samples.
class Frames {
  public:
    explicit Frames(float sampleRate)
        : left_(48)
        , right_(48) {
        analyser_.configure(sampleRate, 3, 16);
        std::mt19937 generator(1);
        std::normal_distribution<float> normal(0, 0.2F);
        for (int i = 0; i < analyser_.fftSize(); i += 48) {
            std::generate(left_.begin(), left_.end(), [&] { return normal(generator); });
            std::generate(right_.begin(), right_.end(), [&] { return normal(generator); });
            feed();
        }
    }
    int size() const { return analyser_.fftSize(); }
    bool feed() {
        Orvel::Slice slice;
        slice.count = static_cast<int>(left_.size());
        for (const float*& channel : slice.channels)
            channel = left_.data();
        slice.channels[Vardo::kSide] = right_.data();
        return analyser_.feed(slice);
    }
    /// All samples from now on.
    void scale(float factor) {
        for (auto* channel : {&left_, &right_})
            for (float& sample : *channel)
                sample *= factor;
    }
    /// Time of the one call that makes the frame.
    double frameMicroseconds() {
        for (;;) {
            const auto start = Clock::now();
            const bool finished = feed();
            if (finished) return microsecondsSince(start);
        }
    }

  private:
    std::vector<float> left_;
    std::vector<float> right_;
    Orvel::SpectrumAnalyser analyser_;
};

/// Both in turn, so that what else the machine does strikes both alike; medians.
void frameBesideBareTransform(benchmark::State& state) {
    Frames frames(static_cast<float>(state.range(0)));
    BareTransform bare(frames.size());
    std::vector<double> frameTimes;
    std::vector<double> bareTimes;
    for (auto _ : state) {
        // As a frame does, the second of two transforms finds its plan in the cache.
        const auto start = Clock::now();
        bare.run();
        bare.run();
        bareTimes.push_back(microsecondsSince(start) / 2);
        frameTimes.push_back(frames.frameMicroseconds() / 2);
    }
    const auto median = [](std::vector<double>& times) {
        std::nth_element(times.begin(), times.begin() + static_cast<long>(times.size() / 2),
                         times.end());
        return times[times.size() / 2];
    };
    const double frame = median(frameTimes);
    const double transform = median(bareTimes);
    state.counters["size"] = frames.size();
    state.counters["channel_us"] = frame;
    state.counters["bare_us"] = transform;
    state.counters["ratio"] = frame / transform;
}
BENCHMARK(frameBesideBareTransform)->Arg(48000)->Arg(96000)->Arg(192000)->Arg(384000);

/// Everything a second of audio costs at 16 frames per frame length, in slices of a millisecond:
/// noise, then numbers so small that processors handle them slowly, then silence.
void secondOfAudio(benchmark::State& state, float level) {
    Frames frames(48000);
    frames.scale(level);
    for (auto _ : state)
        for (int slice = 0; slice < 1000; ++slice)
            benchmark::DoNotOptimize(frames.feed());
}
BENCHMARK_CAPTURE(secondOfAudio, of_noise, 1.0F)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(secondOfAudio, of_denormals, 1e-39F)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(secondOfAudio, of_silence, 0.0F)->Unit(benchmark::kMillisecond);

/// Plan and twiddle factors of a size nobody used before, buffers and window.
void settingUpTheFirstInstanceOfASize(benchmark::State& state) {
    for (auto _ : state) {
        Orvel::SpectrumAnalyser analyser;
        analyser.configure(48000, 2, 16);
        benchmark::DoNotOptimize(analyser.fftSize());
    }
}
BENCHMARK(settingUpTheFirstInstanceOfASize)->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace
