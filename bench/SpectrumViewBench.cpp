// What a full paint of the spectrum costs, mode by mode, with noise in every bin.
#include "../tests/views/WaterfallReference.h"
#include "analysis/OrvelScope.h"
#include "draw/Bitmap.h"
#include "platform/Offscreen.h"
#include "tree/SorelineEditor.h"
#include "views/Spectrum.h"

#include <benchmark/benchmark.h>

#include <random>
#include <vector>

namespace {

using namespace Sorel;

/// The spectrum page's view in a frame in memory, measuring for four seconds.
class Page final : public CSorelineEditor {
  public:
    Page()
        : CSorelineEditor(nullptr, nullptr) {
        setPlatform(&platform_);
        analyser_.setSampleRate(48000.0);
        analyser_.setBlockSize(1);
        analyser_.setActivePage(1);
        setRect(1000.0, 545.0);
        openFrame(nullptr);
        idleFrame();
    }
    ~Page() override {
        closeFrame();
        setPlatform(nullptr);
    }

    void set(Orvel::ParameterId id, double value) {
        analyser_.parameter(id).setValue(static_cast<float>(value));
        view_->onParameterChanged(id);
    }
    /// Frames of the engine's size, straight into the hand-over: levels of music, from -10 dB at
    /// the left to the floor at the right, 30 dB up and down from bin to bin.
    void measure() {
        const int size = view_->model().fftSize();
        std::vector<float> levels(static_cast<std::size_t>(size / 2 + 1));
        std::mt19937 random(7);
        std::uniform_real_distribution<float> swing(0.0F, 30.0F);
        for (int frame = 0; frame < 160; ++frame) {
            for (std::size_t i = 0; i < levels.size(); ++i)
                levels[i] = -10.0F - swing(random) -
                            30.0F * static_cast<float>(i) / static_cast<float>(levels.size());
            analyser_.display().spectra[0].push(levels.data(), size);
            tick();
        }
    }
    void tick() { view_->onTimer(25); }
    void paint() { view_->draw(canvas_.context()); }
    const Orvel::SpectrumWaterfall& rows() const { return view_->model().waterfall(); }
    CBitmap& canvas() { return canvas_; }

  protected:
    void onFrameCreated(CFrame& frame) override {
        view_ = new CSpectrum({145.0, 56.0, 990.0, 431.0}, &analyser_);
        frame.addView(view_);
    }

  private:
    COffscreenPlatform platform_;
    Orvel::COrvelScope analyser_{nullptr};
    CBitmap canvas_{1000, 545};
    CSpectrum* view_ = nullptr;
};

void paint(benchmark::State& state, bool line, bool waterfall) {
    Page page;
    page.set(Orvel::kSpectrumDrawLine, line ? 1.0 : 0.0);
    page.set(Orvel::kSpectrumDrawWaterfall, waterfall ? 1.0 : 0.0);
    page.measure();
    for (auto _ : state)
        page.paint();
}
BENCHMARK_CAPTURE(paint, line, true, false)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(paint, bars, false, false)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(paint, waterfall, false, true)->Unit(benchmark::kMicrosecond);

/// The rows alone: by their own painter, and as the polygons that it is compared with.
void rows(benchmark::State& state, bool asPolygons) {
    Page page;
    page.set(Orvel::kSpectrumDrawWaterfall, 1.0);
    page.measure();
    const CRect room{145.0, 56.0, 990.0, 431.0};
    const WaterfallProjection projection(room, 0.65);
    SpectrumWaterfallPainter painter;
    for (auto _ : state)
        if (asPolygons)
            paintWaterfallAsPolygons(page.canvas().context(), page.rows(), 375.0, projection);
        else
            painter.paint(page.canvas().surface(), room, page.rows(), 375.0, projection);
}
BENCHMARK_CAPTURE(rows, ownPainter, false)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(rows, polygons, true)->Unit(benchmark::kMicrosecond);

/// One step of the timer: model, and what is to be drawn.
void step(benchmark::State& state, bool line, bool waterfall) {
    Page page;
    page.set(Orvel::kSpectrumDrawLine, line ? 1.0 : 0.0);
    page.set(Orvel::kSpectrumDrawWaterfall, waterfall ? 1.0 : 0.0);
    page.measure();
    for (auto _ : state)
        page.tick();
}
BENCHMARK_CAPTURE(step, line, true, false)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(step, bars, false, false)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(step, waterfall, false, true)->Unit(benchmark::kMicrosecond);

} // namespace
