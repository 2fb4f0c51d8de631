// A user's session at the real window: an analyser that plays, its editor on a display of the
// test's own, eyes that read the screen and hands that work it.
#pragma once

#include "Instrument.h"
#include "XDoTool.h"
#include "XServer.h"
#include "controls/MessageBox.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <functional>

namespace Orvel {

using Sorel::CRect;

/// 0xRRGGBB of a part of the screen, row by row.
using Picture = std::vector<std::uint32_t>;

/// How many pixels are not the same.
int differences(const Picture& a, const Picture& b);
bool isGold(std::uint32_t pixel);

class Session : public testing::Test {
  protected:
    static constexpr Place kNowhere{1200, 700};
    static constexpr CRect kWindow{0.0, 0.0, 1000.0, 545.0};
    static constexpr CRect kDisplay{145.0, 56.0, 990.0, 431.0};
    static constexpr CRect kSystemInfo{838.0, 456.0, 975.0,
                                       498.0}; // its figures move by themselves

    void SetUp() override;
    void TearDown() override;

    void open();
    void close();
    COrvelScope& analyser() { return instrument_->analyser; }
    Vardo::IPluginParameter& parameter(ParameterId id) { return (*instrument_)[id]; }
    float plain(ParameterId id) { return parameter(id).getValue(); }
    void showPage(int page);

    // Time: 5 ms of audio and one idle a step, as fast as time goes.
    void step(int times = 1);
    void listen(int milliseconds) { step(milliseconds / 5); }
    /// Steps until it holds, at most for some seconds. Gives whether it does.
    bool until(const std::function<bool()>& condition);
    bool becomes(ParameterId id, int value) {
        return until([&] { return parameter(id).getIntValue() == value; });
    }
    void play(orvel_test::Stereo audio) { audio_ = std::move(audio); }

    // Eyes.
    Picture look(const CRect& rect) const;
    std::uint32_t pixel(Place at) const { return user_->pixel(at.x, at.y); }
    /// The part once it stands still. For parts that do not follow the music.
    Picture settled(const CRect& rect);
    bool changes(const CRect& rect, const Picture& before, int atLeast = 1) {
        return until([&] { return differences(look(rect), before) >= atLeast; });
    }
    /// Between two pictures of a part, outside of `changed`; figures that move by themselves do not
    /// count.
    static int differencesOutside(const CRect& changed,
                                  const CRect& rect,
                                  const Picture& now,
                                  const Picture& before);
    /// Writes the screen into the folder that ORVEL_PICTURES names, for looking at.
    void keep(const std::string& station);

    // Menus.
    /// Those that are open, the first one first.
    std::vector<CRect> menus() const;
    CRect openMenu(Place where, int button = 1);
    bool waitForNoMenu() {
        return until([this] { return menus().empty(); });
    }
    /// Where the row is: `row` others and `separators` lines stand above it.
    static Place rowOf(const CRect& menu, int row, int separators = 0);

    // Messages over the window.
    Sorel::CMessageBox* message();
    bool waitForMessage() {
        return until([this] { return message() != nullptr; });
    }
    bool waitForNoMessage() {
        return until([this] { return message() == nullptr; });
    }
    /// Whether these lines stand in the open message, letter by letter; the first is its title.
    bool messageSays(const std::vector<std::string>& lines);
    void pressMessageButton(int index);

    std::unique_ptr<XUser> user_;
    std::unique_ptr<Instrument> instrument_;
    std::vector<std::string> openedOnDesktop_;

  private:
    Sorel::COffscreenPlatform unused_;
    orvel_test::Stereo audio_;
    int at_ = 0; // in it, samples
    std::chrono::steady_clock::time_point next_{};
};

} // namespace Orvel
