// An analyser that measured something, and a frame in memory to show it in.
#pragma once

#include "../toolkit/ToolkitTest.h"
#include "Signals.h"
#include "analysis/OrvelScope.h"
#include "assets/Archives.h"
#include "draw/PictureCache.h"

#include <cstdlib>

namespace Sorel {

/// The whole window with its ground, so that pictures look as they will. `show` adds views; `play`
/// runs audio through the engine (on this thread) and lets the window idle every 25 ms of it.
/// Set ORVEL_PICTURES to a folder to keep what `keep` draws, for looking at.
class ViewsTest : public ToolkitTest {
  protected:
    static constexpr double kRate = 48000.0;
    static constexpr int kBlock = 480;

    ViewsTest() {
        analyser_.setThreadedProcessing(false);
        analyser_.display().setWatched(true);
    }
    /// Views use the analyser until they are gone.
    ~ViewsTest() override { editor_.reset(); }

    CFrame& show(TestEditor::Fill fill) {
        editor_ = std::make_unique<TestEditor>([&](CFrame& frame) {
            frame.setBackground(pictures_.getBitmap("Background.png"));
            fill(frame);
        });
        editor_->setRect(1000.0, 545.0);
        editor_->openFrame(nullptr);
        idle();
        return *editor_->frame();
    }
    /// Blocks of 10 ms; an idle after 2, 3, 2, 3... of them.
    void play(const orvel_test::Stereo& audio) {
        for (int offset = 0; offset + kBlock <= audio.size(); offset += kBlock) {
            host_.block(audio, offset, kBlock);
            waiting_ += 10;
            if (waiting_ < 25) continue;
            waiting_ -= 25;
            idle(25);
        }
    }
    /// Idles without audio, as when a host stands still.
    void wait(int milliseconds) {
        for (; milliseconds > 0; milliseconds -= 25)
            idle(25);
    }
    void setPlain(Orvel::ParameterId id, double value) {
        analyser_.parameter(id).setValue(static_cast<float>(value));
        analyser_.onIdle();
    }
    void keep(const std::string& name) {
        if (const char* folder = std::getenv("ORVEL_PICTURES"))
            window().writePng(std::string(folder) + "/" + name + ".png");
    }

    CPictureCache pictures_{Assets::pictureArchive()};
    Orvel::COrvelScope analyser_{nullptr};
    orvel_test::PlainHost host_{analyser_, kRate, kBlock};

  private:
    int waiting_ = 0;
};

} // namespace Sorel
