// What does the whole analysis cost, in milliseconds of one core per second of audio: per page,
// over sample rates and block sizes, and in silence after music?
//
// The analysis runs on the calling thread, inside `process`, copies included.
#include "analysis/OrvelScope.h"
#include "frame/ProcessContext.h"

#include <benchmark/benchmark.h>

#include <array>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <numbers>
#include <random>
#include <string>
#include <vector>

namespace {

enum Page : int { kScope = 0, kSpectrum = 1, kStereoField = 2, kMeteringAlone = 3 };

constexpr std::size_t kSeconds = 4;

/// Something like music: a chord, noise that comes in beats, and a different right channel.
struct Music {
    explicit Music(int rate) {
        std::mt19937 generator(1);
        std::normal_distribution<float> normal(0, 1);
        const auto count = kSeconds * static_cast<std::size_t>(rate);
        for (auto* channel : {&left, &right})
            channel->resize(count);
        for (std::size_t i = 0; i < count; ++i) {
            const double t = static_cast<double>(i) / rate;
            double chord = 0;
            for (const double hz : {110.0, 164.8, 277.2, 880.0})
                chord += std::sin(2 * std::numbers::pi * hz * t);
            const auto beat = static_cast<float>(std::exp(-12 * std::fmod(t, 0.5)));
            left[i] = static_cast<float>(chord) * 0.1F + normal(generator) * beat * 0.2F;
            right[i] = static_cast<float>(chord) * 0.08F + normal(generator) * beat * 0.25F;
        }
    }
    std::vector<float> left;
    std::vector<float> right;
};

class Player {
  public:
    Player(int rate, int block, Page page)
        : block_(block)
        , out_{std::vector<float>(static_cast<std::size_t>(block)),
               std::vector<float>(static_cast<std::size_t>(block))} {
        scope.setThreadedProcessing(false);
        scope.setSampleRate(rate);
        scope.setBlockSize(block);
        scope.setActivePage(page);
        scope.scopeTable().SetNumColumns(845); // as wide as the window draws it
    }

    void play(std::vector<float>& left, std::vector<float>& right) {
        for (std::size_t at = 0; at + static_cast<std::size_t>(block_) <= left.size();
             at += static_cast<std::size_t>(block_)) {
            float* inputs[] = {&left[at], &right[at]};
            float* outputs[] = {out_[0].data(), out_[1].data()};
            Vardo::CProcessContext context(inputs, 2, outputs, 2, nullptr, block_);
            scope.process(context);
        }
    }

    Orvel::COrvelScope scope{nullptr};

  private:
    int block_;
    std::array<std::vector<float>, 2> out_;
};

/// Runs the loop and says it per second of audio and per sample.
void timeOver(benchmark::State& state, int rate, Player& player, Music& audio) {
    const auto start = std::chrono::steady_clock::now();
    for (auto _ : state)
        player.play(audio.left, audio.right);
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
    const double seconds = static_cast<double>(state.iterations()) * double{kSeconds};
    state.counters["ms_per_second"] = elapsed.count() / seconds * 1e3;
    state.counters["ns_per_sample"] = elapsed.count() / seconds / rate * 1e9;
}

void page(benchmark::State& state) {
    const int rate = static_cast<int>(state.range(1));
    Player player(rate, static_cast<int>(state.range(2)), static_cast<Page>(state.range(0)));
    Music music(rate);
    timeOver(state, rate, player, music);
}

/// Silence, after the same music: values that decay must not become denormal numbers.
void silenceAfterMusic(benchmark::State& state) {
    constexpr int kRate = 48000;
    Player player(kRate, 512, static_cast<Page>(state.range(0)));
    if (state.range(0) == kScope) player.scope.parameter(Orvel::kScopeDeEsserMale).setValue(1);
    Music music(kRate);
    Music silence(kRate);
    for (auto* channel : {&silence.left, &silence.right})
        channel->assign(channel->size(), 0.0F);
    Music& audio = state.range(1) != 0 ? silence : music;
    player.play(music.left, music.right);
    for (int i = 0; i < 5 * state.range(1); ++i)
        player.play(silence.left, silence.right);
    timeOver(state, kRate, player, audio);
}

void pages(benchmark::internal::Benchmark* bench) {
    bench->ArgNames({"page", "rate", "block"})->Unit(benchmark::kMillisecond);
    for (const int each : {kScope, kSpectrum, kStereoField, kMeteringAlone}) {
        bench->Args({each, 48000, 512});
        for (const int rate : {44100, 96000, 192000, 384000})
            bench->Args({each, rate, 512});
        for (const int block : {32, 128, 2048, 8192})
            bench->Args({each, 48000, block});
    }
}

BENCHMARK(page)->Apply(pages);
BENCHMARK(silenceAfterMusic)
    ->ArgsProduct({{kScope, kSpectrum, kStereoField, kMeteringAlone}, {0, 1}})
    ->ArgNames({"page", "silent"})
    ->Unit(benchmark::kMillisecond);

// The settings of whoever runs this are left alone.
const bool privateSettings = [] {
    setenv("XDG_CONFIG_HOME", "/tmp/orvel-bench-config", 1);
    return true;
}();

} // namespace
