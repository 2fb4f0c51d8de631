// An analyser with its editor on a desktop in memory, fed by a plain host that writes down what it
// hears.
#pragma once

#include "Signals.h"
#include "analysis/OrvelScope.h"
#include "frame/VardoCallback.h"
#include "platform/Offscreen.h"
#include "views/OrvelScopeEditor.h"

#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

namespace Orvel {

class EditHost : public Vardo::VardoCallback {
  public:
    int beginEdit(int index) override {
        return calls.push_back("begin" + std::to_string(index)), 1;
    }
    int endEdit(int index) override { return calls.push_back("end" + std::to_string(index)), 1; }
    void automate(int, float) override { calls.push_back("set"); }
    int getInterfaceKind() override { return static_cast<int>(Vardo::InterfaceKind::vst2); }
    std::vector<std::string> calls;
};

class Instrument {
  public:
    explicit Instrument(Sorel::COffscreenPlatform& desktop, EditorSurroundings surroundings = {})
        : desktop_(desktop)
        , surroundings_(std::move(surroundings)) {
        analyser.setThreadedProcessing(false);
    }
    void open() { editor().open(nullptr); }
    COrvelScopeEditor& editor() { return static_cast<COrvelScopeEditor&>(*analyser.getEditor()); }
    Sorel::COffscreenFrame& window() { return *desktop_.frame(); }
    void idle(int times = 1) {
        for (; times > 0; --times) {
            desktop_.advance(25);
            analyser.onIdle();
            editor().idle();
        }
    }
    void play(const orvel_test::Stereo& audio) {
        for (int at = 0; at + kBlock <= audio.size(); at += kBlock) {
            player.block(audio, at, kBlock);
            idle();
        }
    }
    Vardo::IPluginParameter& operator[](ParameterId id) { return analyser.parameter(id); }
    /// Set ORVEL_PICTURES to a folder to keep what the window shows.
    void keep(const std::string& name) {
        idle();
        if (const char* pictures = std::getenv("ORVEL_PICTURES"))
            window().writePng(std::string(pictures) + "/" + name + ".png");
    }

    static constexpr int kBlock = 1200; // 25 ms
    EditHost host;

  private:
    Sorel::COffscreenPlatform& desktop_;
    EditorSurroundings surroundings_;

  public:
    COrvelScope analyser{&host, [this](COrvelScope& scope) {
                             surroundings_.callback = &host;
                             if (!surroundings_.desktop)
                                 surroundings_.desktop = [this]() -> Sorel::IPlatform& {
                                     return desktop_;
                                 };
                             return std::make_unique<COrvelScopeEditor>(scope, surroundings_);
                         }};
    orvel_test::PlainHost player{analyser, 48000, kBlock};
};

} // namespace Orvel
