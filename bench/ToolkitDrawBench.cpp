// What drawing costs: the column path beside the generic one, blending, text, gradients.
#include "draw/Bitmap.h"

#include <benchmark/benchmark.h>
#include <random>
#include <vector>

namespace {

using namespace Sorel;

constexpr int kColumns = 845;
constexpr int kHeight = 350;

/// Minima and maxima of music-like noise: steep almost everywhere.
struct Waveform {
    std::vector<float> upper;
    std::vector<float> lower;
    CLinearGradient gradient = CLinearGradient::vertical(0.0, kHeight)
                                   .stop(0.0, {161, 163, 193, 120})
                                   .stop(0.5, {161, 163, 193, 30})
                                   .stop(1.0, {161, 163, 193, 120});

    Waveform() {
        std::mt19937 random(1);
        std::uniform_real_distribution<float> unit(0.0f, 1.0f);
        for (int c = 0; c < kColumns; ++c) {
            const float swell = 0.55f + 0.4f * std::sin(static_cast<float>(c) * 0.02f);
            upper.push_back(kHeight * (0.5f - 0.5f * swell * unit(random)));
            lower.push_back(kHeight * (0.5f + 0.5f * swell * unit(random)));
        }
    }
    CPath path() const {
        CPath path;
        for (int c = 0; c < kColumns; ++c) {
            const double y = double{upper[static_cast<std::size_t>(c)]};
            c == 0 ? path.moveTo(0.0, y) : path.lineTo(c, y);
        }
        for (int c = kColumns; c-- > 0;)
            path.lineTo(c, double{lower[static_cast<std::size_t>(c)]});
        path.close();
        return path;
    }
};

CBitmap& canvas() {
    static CBitmap bitmap(1000, 545);
    bitmap.renderer().clear({34, 37, 59, 255});
    return bitmap;
}

void bandThroughAgg(benchmark::State& state) {
    const Waveform wave;
    CRenderer& renderer = canvas().renderer();
    for (auto _ : state) {
        const CPath path = wave.path();
        renderer.fillPath(path, wave.gradient);
        renderer.noFill();
        renderer.lineColor({161, 163, 193, 200});
        renderer.lineWidth(0.4);
        renderer.path(path);
    }
}
BENCHMARK(bandThroughAgg)->Unit(benchmark::kMicrosecond);

void band(benchmark::State& state) {
    const Waveform wave;
    CRenderer& renderer = canvas().renderer();
    for (auto _ : state)
        renderer.columnBand({0.0, 1.0, wave.upper, wave.lower}, wave.gradient, {161, 163, 193, 200},
                            0.4);
}
BENCHMARK(band)->Unit(benchmark::kMicrosecond);

void bandWithoutOutline(benchmark::State& state) {
    const Waveform wave;
    CRenderer& renderer = canvas().renderer();
    for (auto _ : state)
        renderer.columnBand({0.0, 1.0, wave.upper, wave.lower}, wave.gradient, {161, 163, 193, 200},
                            0.0);
}
BENCHMARK(bandWithoutOutline)->Unit(benchmark::kMicrosecond);

void lineThroughAgg(benchmark::State& state) {
    const Waveform wave;
    CRenderer& renderer = canvas().renderer();
    renderer.lineColor({250, 200, 60, 255});
    renderer.lineWidth(0.7);
    std::vector<CPoint> points;
    for (auto _ : state) {
        points.clear();
        for (std::size_t c = 0; c < kColumns; ++c)
            points.push_back({static_cast<double>(c), double{wave.upper[c]}});
        renderer.polyline(points);
    }
}
BENCHMARK(lineThroughAgg)->Unit(benchmark::kMicrosecond);

void line(benchmark::State& state) {
    const Waveform wave;
    CRenderer& renderer = canvas().renderer();
    for (auto _ : state)
        renderer.columnLine(0.0, 1.0, wave.upper, {250, 200, 60, 255}, 0.7);
}
BENCHMARK(line)->Unit(benchmark::kMicrosecond);

/// 256 * 128 pixels, one colour with alpha.
void blend32768Pixels(benchmark::State& state) {
    CRenderer& renderer = canvas().renderer();
    renderer.noLine();
    renderer.fillColor({250, 200, 60, 90});
    for (auto _ : state)
        renderer.rectangle({20.0, 20.0, 276.0, 148.0});
}
BENCHMARK(blend32768Pixels)->Unit(benchmark::kMicrosecond);

/// The same number of pixels of a picture with alpha.
void copy32768Pixels(benchmark::State& state) {
    CBitmap picture(256, 128);
    picture.renderer().clear({250, 200, 60, 90});
    CRenderer& renderer = canvas().renderer();
    for (auto _ : state)
        renderer.copyImage(picture.surface(), 0, 0, 256, 128, 20, 20);
}
BENCHMARK(copy32768Pixels)->Unit(benchmark::kMicrosecond);

void gradientRectangle(benchmark::State& state) {
    const Waveform wave;
    CRenderer& renderer = canvas().renderer();
    for (auto _ : state)
        renderer.fillRectangle({145.0, 56.0, 990.0, 431.0}, wave.gradient);
}
BENCHMARK(gradientRectangle)->Unit(benchmark::kMicrosecond);

void textLine(benchmark::State& state) {
    CDrawContext& context = canvas().context();
    context.setFont(kDefaultFont, 10.0, kRegularFont);
    for (auto _ : state)
        context.drawString("Highest: -12.4dB @ 1000.5Hz (B#4)", {400.0, 20.0, 700.0, 34.0}, true,
                           HorizontalAlign::kRight);
}
BENCHMARK(textLine)->Unit(benchmark::kMicrosecond);

} // namespace
