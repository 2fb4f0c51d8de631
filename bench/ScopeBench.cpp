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
        analyser.setBlockSize(480);
        analyser.parameter(Orvel::kScopeVisibleTimeMs).setValue(visibleMs);
        analyser.parameter(Orvel::kScopeChannelMode).setValue(channelMode);
        analyser.parameter(Orvel::kScopeTransientDetection).setValue(1.0F);
        analyser.parameter(Orvel::kScopeDeEsserMale).setValue(1.0F);
        analyser.onIdle();
        scope = std::make_unique<CScope>(kPlace, &analyser);
        std::mt19937 random(1);
        std::uniform_real_distribution<float> unit(-1.0F, 1.0F);
        std::vector<float> left(480);
        std::vector<float> right(480);
        for (int block = 0; block < 600; ++block) {
            const float swell = block % 40 < 4 ? 1.05F : 0.25F + 0.02F * float(block % 25);
            for (std::size_t i = 0; i < left.size(); ++i) {
                left[i] = swell * unit(random);
                right[i] = swell * unit(random);
            }
            float* channels[2] = {left.data(), right.data()};
            Vardo::CProcessContext context(channels, 2, channels, 2, nullptr, 480);
            context.setTempo(120.0F);
            context.setPlaying(true);
            analyser.process(context);
        }
        canvas.renderer().clear({34, 37, 59, 255});
        // A view of its own, made again, has taken the table as it is now.
        scope = std::make_unique<CScope>(kPlace, &analyser);
    }
};

void paint(benchmark::State& state, Fixture& fixture, const CRect& clip) {
    CDrawContext& context = fixture.canvas.context();
    for (auto _ : state) {
        context.setClipRect(clip);
        fixture.scope->draw(context);
    }
}

void twoLanes(benchmark::State& state) {
    Fixture fixture(5000.0F);
    paint(state, fixture, kPlace);
}
BENCHMARK(twoLanes)->Unit(benchmark::kMicrosecond);

void oneLane(benchmark::State& state) {
    Fixture fixture(5000.0F, 3.0F);
    paint(state, fixture, kPlace);
}
BENCHMARK(oneLane)->Unit(benchmark::kMicrosecond);

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
