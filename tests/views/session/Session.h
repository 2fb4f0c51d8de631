// A user's session at the real window: an analyser that plays, its editor on a display of the
// test's own, eyes that read the screen and hands that work it.
#pragma once

#include "Signals.h"
#include "XDoTool.h"
#include "XServer.h"
#include "analysis/OrvelScope.h"
#include "draw/Geometry.h"
#include "frame/EditorHost.h"
#include "frame/VardoCallback.h"
#include "views/OrvelScopeEditor.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace Orvel {

/// What a host writes down: "begin 0".
std::string hostCall(std::string what, int index);

/// A plain host that writes down what it hears.
class SessionHost : public Vardo::VardoCallback, public Vardo::IEditorHost {
  public:
    int beginEdit(int index) override { return note("begin", index); }
    int endEdit(int index) override { return note("end", index); }
    void automate(int index, float /*value*/) override { note("set", index); }
    bool editorKeyDown(const Vardo::KeyEvent& key) override {
        keys += static_cast<char>(key.character);
        return true;
    }
    void editorCloseRequested() override {}
    bool editorFilesDropped(const std::vector<std::string>&) override { return false; }

    std::vector<std::string> calls; // nothing of parameters that hosts do not see
    std::string keys;               // that nothing in the window used

  private:
    int note(const char* what, int index) {
        if (index >= 0) calls.push_back(hostCall(what, index));
        return 1;
    }
};

/// 0xRRGGBB of a part of the screen, row by row.
using Picture = std::vector<std::uint32_t>;

/// How many pixels are not the same.
int differences(const Picture& a, const Picture& b);
bool isGold(std::uint32_t pixel);

class Session : public testing::Test {
  protected:
    static constexpr double kRate = 48000.0;
    static constexpr int kBlock = 240; // 5 ms
    static constexpr Place kNowhere{1200, 700};
    static constexpr Sorel::CRect kWindow{0.0, 0.0, 1000.0, 545.0};
    static constexpr Sorel::CRect kDisplay{145.0, 56.0, 990.0, 431.0};
    static constexpr Sorel::CRect kMeter{10.0, 56.0, 135.0, 431.0};

    Session();
    ~Session() override;
    void SetUp() override;
    void TearDown() override;

    void open();
    void close();
    COrvelScopeEditor& editor() { return static_cast<COrvelScopeEditor&>(*analyser_->getEditor()); }
    Vardo::IPluginParameter& parameter(ParameterId id) { return analyser_->parameter(id); }
    float plain(ParameterId id) { return parameter(id).getValue(); }
    void showPage(int page);

    // Time: 5 ms of audio and one idle a step, as fast as time goes.
    void step(int times = 1);
    void listen(int milliseconds) { step(milliseconds / 5); }
    /// Steps until it holds, at most for some seconds. Gives whether it does.
    bool until(const std::function<bool()>& condition);
    void play(orvel_test::Stereo audio) { audio_ = std::move(audio); }

    // Eyes.
    Picture look(const Sorel::CRect& rect) const;
    std::uint32_t pixel(Place at) const { return user_->pixel(at.x, at.y); }
    /// The part once it stands still. For parts that do not follow the music.
    Picture settled(const Sorel::CRect& rect);
    bool changes(const Sorel::CRect& rect, const Picture& before, int atLeast = 1);
    /// Menus that are open, the first one first.
    std::vector<Sorel::CRect> menus() const;
    bool waitForMenu() {
        return until([this] { return !menus().empty(); });
    }
    bool waitForNoMenu() {
        return until([this] { return menus().empty(); });
    }
    /// Where the row is: `row` others and `separators` lines stand above it.
    static Place rowOf(const Sorel::CRect& menu, int row, int separators = 0);
    /// Writes the screen into the folder that ORVEL_PICTURES names, for looking at.
    void keep(const std::string& station);

    // Messages over the window.
    /// The box of the message that is open; empty without one.
    Sorel::CRect message() const;
    bool waitForMessage() {
        return until([this] { return !message().isEmpty(); });
    }
    bool waitForNoMessage() {
        return until([this] { return message().isEmpty(); });
    }
    /// Whether the open message says this, pixel by pixel.
    bool messageSays(const std::string& title, const std::vector<std::string>& lines) const;
    /// Of the open message, counted from the right.
    Place messageButton(int fromRight) const;

    std::unique_ptr<XUser> user_;
    SessionHost host_;
    std::vector<std::string> openedOnDesktop_;
    std::unique_ptr<COrvelScope> analyser_;

  private:
    static XServer& server();

    std::unique_ptr<orvel_test::PlainHost> player_;
    orvel_test::Stereo audio_;
    int at_ = 0; // in it, samples
    std::chrono::steady_clock::time_point next_{};
};

} // namespace Orvel
