// What it costs to paint a control again: the dirty rectangle with its ground, into the back
// buffer.
#include "assets/Archives.h"
#include "controls/ActionButton.h"
#include "controls/Dial.h"
#include "draw/PictureCache.h"
#include "frame/ParameterProperty.h"
#include "platform/Offscreen.h"
#include "tree/SorelineEditor.h"

#include <benchmark/benchmark.h>

namespace {

using namespace Sorel;

class Page : public CSorelineEditor {
  public:
    Page()
        : CSorelineEditor(nullptr, nullptr) {
        gain_.setFromDescription(
            {"Gain", "Gain", "Gain", 0, 1, 0.4F, 1, true, 0, Vardo::kGainInDecibels, 0});
        on_.setFromDescription({"On", "On", "On", 0, 1, 1, 0, true, 0, Vardo::kSwitch, 1});
        setPlatform(&platform_);
        setRect(1000.0, 545.0);
        openFrame(nullptr);
    }
    ~Page() override { closeFrame(); }

    CDial* dial = nullptr;
    CSwitch* button = nullptr;

  protected:
    void onFrameCreated(CFrame& frame) override {
        frame.setBackground(pictures_.getBitmap("Background.png"));
        const CDial::Pictures pictures{pictures_.getBitmap("NormalDialBG.png"),
                                       pictures_.getBitmap("NormalDialLedRing.png"),
                                       pictures_.getBitmap("NormalDial.png")};
        dial = new CDial({150.0, 459.0}, nullptr, 0, "Input Gain", pictures, &gain_);
        frame.addView(dial);
        button =
            new CSwitch({690.0, 464.0}, nullptr, 0, pictures_.getBitmap("OnOff_Button.png"), &on_);
        button->setCaption("Freeze", 100.0);
        frame.addView(button);
    }

  private:
    COffscreenPlatform platform_;
    CPictureCache pictures_{Assets::pictureArchive()};
    Vardo::ParameterProperty gain_;
    Vardo::ParameterProperty on_;
};

void BM_Dial(benchmark::State& state) {
    Page page;
    for (auto _ : state) {
        page.dial->setDirty(true);
        page.frame()->repaint();
    }
}
BENCHMARK(BM_Dial)->Unit(benchmark::kMicrosecond);

void BM_Switch(benchmark::State& state) {
    Page page;
    for (auto _ : state) {
        page.button->setDirty(true);
        page.frame()->repaint();
    }
}
BENCHMARK(BM_Switch)->Unit(benchmark::kMicrosecond);

void BM_NothingDirty(benchmark::State& state) {
    Page page;
    for (auto _ : state)
        page.idleFrame();
}
BENCHMARK(BM_NothingDirty)->Unit(benchmark::kMicrosecond);

} // namespace
