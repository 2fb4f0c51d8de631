// What the mouse does in the displays and meters, and the menus under its right button.
#include "Session.h"
#include "analysis/ScopeTiming.h"

namespace Orvel {
namespace {

class DisplaySession : public Session {
  protected:
    static orvel_test::Stereo silence() {
        return {std::vector<float>(48000), std::vector<float>(48000)};
    }
    int goldPixels(const CRect& rect) const {
        const Picture picture = look(rect);
        return static_cast<int>(std::count_if(picture.begin(), picture.end(), isGold));
    }
};

TEST_F(DisplaySession, TheSyncLabelArmsAndAClickMakesTheLeftEdge) {
    constexpr CRect kSyncLabel{150.0, 71.0, 180.0, 85.0};
    constexpr Place kSync{165, 78};
    constexpr Place kThere{500, 250};
    parameter(kScopeSyncMode).setValue(2); // beat time
    listen(200);
    XDoTool::click(kSync);
    ASSERT_TRUE(until([&] { return goldPixels(kSyncLabel) > 20; })) << "armed";
    // The marker follows the mouse from top to bottom.
    XDoTool::moveTo(kThere);
    EXPECT_TRUE(until([&] { return goldPixels(CRect::ofSize(499, 110, 3, 60)) >= 60; }));
    keep("scope-sync-armed");
    const double before = double{analyser().scopeTiming().phaseOffsetMs};
    const double period = analyser().scopeTiming().period(120.0).milliseconds;
    XDoTool::click(kThere);
    EXPECT_TRUE(until([&] { return goldPixels(kSyncLabel) == 0; })) << "and is done";
    const double shift = (kThere.x - kDisplay.left) / kDisplay.width() * period;
    EXPECT_NEAR(
        std::remainder(double{analyser().scopeTiming().phaseOffsetMs} - before + shift, period),
        0.0, period / kDisplay.width() * 1.5);
}

TEST_F(DisplaySession, ReadOutsComeWithTheMouseAndChangeNothingElse) {
    for (const int page : {0, 1, 2}) {
        showPage(page);
        const ParameterId freeze = page == 0 ? kScopeFreeze : kSpectrumFreeze;
        listen(400);
        parameter(freeze).setValue(1);
        for (int second = 0; second < 20; ++second) // until the meters stand still
            instrument_->play(silence());
        play(silence());
        const CRect room = page == 2 ? CRect{476.0, 56.0, 865.0, 243.0} : kDisplay;
        const Picture still = settled(kWindow);
        for (const int x : {600, 830}) {
            XDoTool::moveTo({x, 150});
            EXPECT_TRUE(changes(kWindow, still, 150)) << page;
            EXPECT_EQ(differencesOutside(room, kWindow, settled(kWindow), still), 0) << page;
            keep("hover-" + std::to_string(page) + "-" + std::to_string(x));
        }
        XDoTool::moveTo(kNowhere);
        EXPECT_EQ(differencesOutside({}, kWindow, settled(kWindow), still), 0) << page;
        parameter(freeze).setValue(0);
    }
}

TEST_F(DisplaySession, OversAreForgottenByAClickOrByTheMetersMenu) {
    constexpr CRect kOverBox{30.0, 75.0, 114.0, 91.0};
    constexpr CRect kOtherBox{885.0, 75.0, 969.0, 91.0};
    showPage(2);
    listen(200);
    const Picture none = look(kOverBox);
    const Picture noneOther = look(kOtherBox);
    const auto loud = orvel_test::sine(48000, 100.0, 48000.0, 1.4);
    const std::function<void()> hands[] = {[] {
                                               XDoTool::click({72, 300});
                                           },
                                           [] {
                                               XDoTool::click({927, 300});
                                           },
                                           [this] {
                                               XDoTool::click(rowOf(openMenu({927, 300}, 3), 5, 1));
                                           }}; // "Reset Overs"
    for (const auto& forget : hands) {
        play({loud, loud});
        EXPECT_TRUE(changes(kOverBox, none, 200) && changes(kOtherBox, noneOther, 200));
        play(silence());
        listen(200);
        keep("overs");
        forget();
        XDoTool::moveTo(kNowhere);
        EXPECT_TRUE(until([&] { return look(kOverBox) == none && look(kOtherBox) == noneOther; }));
        EXPECT_TRUE(waitForNoMenu());
    }
}

TEST_F(DisplaySession, TheMetersMenuChoosesAmongFiveLooks) {
    constexpr CRect kMeter{10.0, 56.0, 135.0, 431.0};
    const auto tone = orvel_test::sine(48000, 1000.0, 48000.0, 0.25);
    play({tone, tone});
    std::vector<Picture> looks;
    for (const int mode : {4, 3, 2, 1, 0}) {
        XDoTool::click(rowOf(openMenu({72, 200}, 3), mode));
        EXPECT_TRUE(waitForNoMenu() && becomes(kGlobalMeteringMode, mode));
        XDoTool::moveTo(kNowhere);
        listen(300);
        keep("metering-" + std::to_string(mode));
        for (const Picture& earlier : looks)
            EXPECT_GT(differences(look(kMeter), earlier), 300) << mode;
        looks.push_back(look(kMeter));
    }
}

TEST_F(DisplaySession, TheRightButtonOpensTheSettingsOfEachDisplay) {
    struct Station {
        int page;
        Place where;
        int switchRow;
        ParameterId switched;
        int subRow, subChoice;
        ParameterId chosen;
        int separators = 1; // above that row
    };
    constexpr Station kStations[] = {
        {0, {500, 200}, 1, kScopeTransientDetection, 4, 2, kScopeChannelMode},
        {0, {900, 400}, 0, kScopeFreeze, 6, 4, kGlobalMeteringMode, 2},
        {1, {500, 200}, 3, kSpectrumLinearFrequencyScale, 5, 1, kSpectrumFFTSize},
        {2, {600, 150}, 1, kSpectrumDrawLine, 4, 4, kSpectrumNumBands},
        {2, {300, 410}, 0, kSpectrumFreeze, 7, 1, kSpectrumAnalyzeMode},
    };
    for (const Station& station : kStations) {
        showPage(station.page);
        const auto isOn = [&] { return parameter(station.switched).getBoolValue(); };
        const bool wasOn = isOn();
        XDoTool::click(rowOf(openMenu(station.where, 3), station.switchRow));
        EXPECT_TRUE(until([&] { return isOn() != wasOn; }));
        EXPECT_TRUE(waitForNoMenu());

        // The sub-menu opens under a mouse that rests, and stays on the way into it.
        const CRect menu = openMenu({station.where.x - 20, station.where.y}, 3);
        XDoTool::moveTo(rowOf(menu, station.subRow, station.separators));
        ASSERT_TRUE(until([&] { return menus().size() == 2; }));
        keep("menu-" + std::to_string(station.page) + "-" + std::to_string(station.subRow));
        const Place choice = rowOf(menus().back(), station.subChoice);
        XDoTool::moveTo({choice.x, rowOf(menu, station.subRow, station.separators).y});
        step(3);
        XDoTool::click(choice);
        EXPECT_TRUE(becomes(station.chosen, station.subChoice));
        EXPECT_TRUE(waitForNoMenu());

        // Escape and a click outside choose nothing.
        instrument_->host.calls.clear();
        openMenu(station.where, 3);
        XDoTool::key("Escape");
        EXPECT_TRUE(waitForNoMenu());
        openMenu(station.where, 3);
        XDoTool::click({100, 700});
        EXPECT_TRUE(waitForNoMenu());
        EXPECT_THAT(instrument_->host.calls, testing::IsEmpty());
    }
}

} // namespace
} // namespace Orvel
