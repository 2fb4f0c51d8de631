// What a picture of the level meters and of the stereo field costs.
#include "draw/Bitmap.h"
#include "views/CorrelationMeter.h"
#include "views/Goniometer.h"
#include "views/LevelMeterStereo.h"

#include <benchmark/benchmark.h>
#include <random>

namespace {

using namespace Sorel;

CDrawContext& canvas() {
    static CBitmap bitmap(1000, 545);
    bitmap.renderer().clear({34, 37, 59, 255});
    return bitmap.context();
}

/// Music-like: most samples small, left and right half alike.
SplineDots::Points cloud() {
    std::mt19937 random(1);
    std::normal_distribution<float> normal(0.0F, 0.25F);
    SplineDots::Points points;
    for (auto& point : points)
        point = {std::clamp(0.5F * normal(random), -0.9F, 0.9F),
                 std::clamp(normal(random), -0.9F, 0.9F)};
    return points;
}

void meter(benchmark::State& state, Orvel::MeteringMode mode) {
    CVUMeter_Stereo view({10.0, 56.0, 135.0, 431.0}, nullptr, kLeftRightMeter);
    HistogramColumn::Counts counts{};
    for (std::size_t i = 40; i < 95; ++i)
        counts[i] = static_cast<int>(i * 7919 % 1000);
    for (int i = 0; i < 2; ++i) {
        view.channel(i).setMode(mode);
        view.channel(i).setHistogram(counts, 1000);
    }
    view.setLevels({0.7F, 0.9F, 0.3F, 11.0F, 3}, {0.6F, 1.1F, 0.25F, 12.0F, 12});
    CDrawContext& context = canvas();
    for (auto _ : state)
        view.draw(context);
}
BENCHMARK_CAPTURE(meter, peak, Orvel::MeteringMode::peak)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(meter, histogram, Orvel::MeteringMode::histogram)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(meter, k20, Orvel::MeteringMode::k20)->Unit(benchmark::kMicrosecond);

void goniometer(benchmark::State& state) {
    CGoniometer view({145.0, 56.0, 475.0, 386.0}, nullptr);
    view.setPoints(cloud(), 48000.0F);
    CDrawContext& context = canvas();
    for (auto _ : state)
        view.draw(context);
}
BENCHMARK(goniometer)->Unit(benchmark::kMicrosecond);

/// Interpolation and 32768 blended pixels.
void dots(benchmark::State& state) {
    SplineDots dots;
    dots.setPoints(cloud(), 150.0F);
    CDrawContext& context = canvas();
    for (auto _ : state)
        dots.draw(context, {310.5, 221.5}, {255, 164, 27, 80});
}
BENCHMARK(dots)->Unit(benchmark::kMicrosecond);

struct Scatter {
    std::vector<float> x;
    std::vector<float> y;
    Scatter() {
        std::mt19937 random(2);
        std::normal_distribution<float> normal(0.0F, 40.0F);
        for (int i = 0; i < 32768; ++i) {
            x.push_back(normal(random));
            y.push_back(normal(random));
        }
    }
};

/// The pixels alone.
void plot32768Points(benchmark::State& state) {
    const Scatter points;
    CDrawContext& context = canvas();
    for (auto _ : state)
        context.drawPoints({310.5, 221.5}, points.x, points.y, {255, 164, 27, 80});
}
BENCHMARK(plot32768Points)->Unit(benchmark::kMicrosecond);

/// The same pixels one call each.
void plot32768PointsOneByOne(benchmark::State& state) {
    const Scatter points;
    CDrawContext& context = canvas();
    for (auto _ : state)
        for (std::size_t i = 0; i < points.x.size(); ++i)
            context.drawPoint(310.5 + double{points.x[i]}, 221.5 + double{points.y[i]},
                              {255, 164, 27, 80});
}
BENCHMARK(plot32768PointsOneByOne)->Unit(benchmark::kMicrosecond);

void correlation(benchmark::State& state) {
    CCorrelationMeter view({145.0, 387.0, 475.0, 431.0}, nullptr);
    view.setValue(0.71F);
    CDrawContext& context = canvas();
    for (auto _ : state)
        view.draw(context);
}
BENCHMARK(correlation)->Unit(benchmark::kMicrosecond);

} // namespace
