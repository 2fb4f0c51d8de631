// What a full paint of the scope costs, and one of the few columns that a picture adds.
#include "analysis/OrvelScope.h"
#include "draw/Bitmap.h"
#include "frame/ProcessContext.h"
#include "views/Scope.h"

#include <benchmark/benchmark.h>
#include <random>
#include <vector>

namespace {

using namespace Sorel;

constexpr CRect kPlace{145.0, 56.0, 990.0, 431.0};

/// A scope over a second of noise that swells, everything on.
struct Fixture {
    Orvel::COrvelScope analyser{nullptr};
    std::unique_ptr<CScope> scope;
    CBitmap canvas{1000, 545};

    explicit Fixture(float visibleMs, float channelMode = 0.0F) {
        analyser.setThreadedProcessing(false);
        analyser.setSampleRate(48000);
        analyser.setBlockSize(kBlock);
        analyser.parameter(Orvel::kScopeVisibleTimeMs).setValue(visibleMs);
        analyser.parameter(Orvel::kScopeChannelMode).setValue(channelMode);
        analyser.parameter(Orvel::kScopeTransientDetection).setValue(1.0F);
        analyser.parameter(Orvel::kScopeDeEsserMale).setValue(1.0F);
        analyser.onIdle();
        scope = std::make_unique<CScope>(kPlace, &analyser);
        play(600);
        canvas.renderer().clear({34, 37, 59, 255});
        makeAnew();
    }

    void play(int blocks) {
        for (const int end = played + blocks; played < end; ++played) {
            const float swell = played % 40 < 4 ? 1.05F : 0.25F + 0.02F * float(played % 25);
            for (std::size_t i = 0; i < left.size(); ++i) {
                left[i] = swell * unit(random);
                right[i] = swell * unit(random);
            }
            float* channels[2] = {left.data(), right.data()};
            Vardo::CProcessContext context(channels, 2, channels, 2, nullptr, kBlock);
            context.setTempo(120.0F);
            context.setPlaying(true);
            analyser.process(context);
        }
    }
    /// A view made again takes the table as it is now, and has painted nothing yet.
    void makeAnew() { scope = std::make_unique<CScope>(kPlace, &analyser); }

  private:
    static constexpr int kBlock = 480;
    int played = 0;
    std::mt19937 random{1};
    std::uniform_real_distribution<float> unit{-1.0F, 1.0F};
    std::vector<float> left = std::vector<float>(kBlock);
    std::vector<float> right = std::vector<float>(kBlock);
};

void paint(benchmark::State& state, Fixture& fixture, const CRect& clip) {
    CDrawContext& context = fixture.canvas.context();
    for (auto _ : state) {
        context.setClipRect(clip);
        fixture.scope->draw(context);
    }
}

/// Everything, as when the page is opened.
void afresh(benchmark::State& state, float channelMode) {
    Fixture fixture(5000.0F, channelMode);
    CDrawContext& context = fixture.canvas.context();
    for (auto _ : state) {
        state.PauseTiming();
        fixture.makeAnew();
        state.ResumeTiming();
        context.setClipRect(kPlace);
        fixture.scope->draw(context);
    }
}
BENCHMARK_CAPTURE(afresh, twoLanes, 0.0F)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(afresh, oneLane, 3.0F)->Unit(benchmark::kMicrosecond);

/// The next picture, 20 ms of audio later: what is drawn 40 times a second.
void scrolling(benchmark::State& state, float channelMode) {
    Fixture fixture(5000.0F, channelMode);
    CDrawContext& context = fixture.canvas.context();
    for (auto _ : state) {
        state.PauseTiming();
        fixture.play(2);
        state.ResumeTiming();
        fixture.scope->onIdle();
        context.setClipRect(kPlace);
        fixture.scope->draw(context);
    }
}
BENCHMARK_CAPTURE(scrolling, twoLanes, 0.0F)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(scrolling, oneLane, 3.0F)->Unit(benchmark::kMicrosecond);

/// Ten milliseconds: a line from sample to sample.
void trace(benchmark::State& state) {
    Fixture fixture(10.0F);
    paint(state, fixture, kPlace);
}
BENCHMARK(trace)->Unit(benchmark::kMicrosecond);

/// No signal: grid, rulers, numbers.
void rulers(benchmark::State& state) {
    CScope scope(kPlace);
    CBitmap canvas(1000, 545);
    canvas.context().setClipRect(kPlace);
    for (auto _ : state)
        scope.draw(canvas.context());
}
BENCHMARK(rulers)->Unit(benchmark::kMicrosecond);

void tenColumns(benchmark::State& state) {
    Fixture fixture(5000.0F);
    paint(state, fixture, {500.0, 68.0, 510.0, 419.0});
}
BENCHMARK(tenColumns)->Unit(benchmark::kMicrosecond);

} // namespace
