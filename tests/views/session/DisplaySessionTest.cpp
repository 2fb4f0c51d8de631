// What the mouse does in the displays: the scope's sync marker and zoom, read-outs under the mouse,
// projector and waterfall, overs and metering modes.
#include "Session.h"
#include "analysis/ScopeTiming.h"

namespace Orvel {
namespace {

using Sorel::CRect;

class DisplaySession : public Session {
  protected:
    static constexpr CRect kSyncLabel{150.0, 71.0, 180.0, 85.0};
    static constexpr Place kSync{165, 78};
    static constexpr CRect kOverBox{30.0, 75.0, 114.0, 91.0};

    int goldPixels(const CRect& rect) const {
        const Picture picture = look(rect);
        return static_cast<int>(std::count_if(picture.begin(), picture.end(), isGold));
    }
    int redPixels(const CRect& rect) const {
        const Picture picture = look(rect);
        return static_cast<int>(
            std::count_if(picture.begin(), picture.end(), [](std::uint32_t color) {
                return static_cast<int>(color >> 16 & 0xFF) >
                       static_cast<int>(color >> 8 & 0xFF) + 60;
            }));
    }
};

TEST_F(DisplaySession, TheSyncLabelArmsAndAClickMakesTheLeftEdge) {
    const Picture free = settled(kSyncLabel);
    parameter(kScopeSyncMode).setValue(2); // beat time
    ASSERT_TRUE(changes(kSyncLabel, free, 30)) << "the label shows";
    listen(200);
    XDoTool::click(kSync);
    ASSERT_TRUE(until([&] { return goldPixels(kSyncLabel) > 20; })) << "armed";
    // The marker follows the mouse from top to bottom.
    const Place there{500, 250};
    XDoTool::moveTo(there);
    const CRect column = CRect::ofSize(there.x - 1, 110, 3, 60);
    ASSERT_TRUE(until([&] { return goldPixels(column) >= 60; }));
    keep("scope-sync-armed");
    const float before = analyser_->scopeTiming().phaseOffsetMs;
    const double period = analyser_->scopeTiming().period(120.0).milliseconds;
    XDoTool::click(there);
    EXPECT_TRUE(until([&] { return analyser_->scopeTiming().phaseOffsetMs != before; }));
    double expected = double{before} - (there.x - 145) / 845.0 * period;
    while (expected < -period)
        expected += period;
    EXPECT_NEAR(double{analyser_->scopeTiming().phaseOffsetMs}, expected, period / 845.0 * 1.5);
    EXPECT_TRUE(until([&] { return goldPixels(kSyncLabel) == 0; })) << "and is done";
    // A second click on the label thinks better of it.
    XDoTool::click(kSync);
    ASSERT_TRUE(until([&] { return goldPixels(kSyncLabel) > 20; }));
    const float kept = analyser_->scopeTiming().phaseOffsetMs;
    XDoTool::moveTo({300, 200});
    step(5);
    XDoTool::click({kSync.x + 8, kSync.y});
    XDoTool::moveTo(kNowhere);
    EXPECT_TRUE(until([&] { return goldPixels(kSyncLabel) == 0; }));
    EXPECT_EQ(analyser_->scopeTiming().phaseOffsetMs, kept);
}

TEST_F(DisplaySession, TheWheelOverTheScopeZoomsInTime) {
    const float before = plain(kScopeVisibleTimeMs);
    XDoTool::click({500, 200}, 4);
    ASSERT_TRUE(until([&] { return plain(kScopeVisibleTimeMs) != before; }));
    EXPECT_NEAR(plain(kScopeVisibleTimeMs), before / 1.2F, 1.0F);
    const CRect times = CRect::ofSize(145.0, 419.0, 845.0, 12.0); // the numbers below
    const Picture numbers = settled(times);
    XDoTool::click({500, 200}, 5);
    EXPECT_TRUE(until([&] { return std::abs(plain(kScopeVisibleTimeMs) - before) < 2.0F; }));
    EXPECT_TRUE(changes(times, numbers, 20));
}

TEST_F(DisplaySession, ReadOutsComeWithTheMouseAndGoWithIt) {
    // Still pictures, so that what differs is the read-out.
    for (const int page : {0, 1, 2}) {
        showPage(page);
        parameter(page == 0 ? kScopeFreeze : kSpectrumFreeze).setValue(0);
        listen(400);
        parameter(page == 0 ? kScopeFreeze : kSpectrumFreeze).setValue(1);
        const CRect room = page == 2 ? CRect{480.0, 60.0, 860.0, 240.0} : kDisplay;
        const Picture still = settled(room);
        for (const int x : {600, 830}) {
            XDoTool::moveTo({x, 150});
            EXPECT_TRUE(changes(room, still, 150)) << page;
            settled(room);
            EXPECT_GT(goldPixels(CRect::ofSize(x - 60, 90.0, 120.0, 140.0)), 30) << page;
            keep("hover-" + std::to_string(page) + "-" + std::to_string(x));
        }
        XDoTool::moveTo(kNowhere);
        EXPECT_TRUE(until([&] { return look(room) == still; })) << page << ": it stays";
    }
}

TEST_F(DisplaySession, TheProjectorStandsWhereItsDialPutsIt) {
    showPage(1);
    listen(400);
    parameter(kSpectrumFreeze).setValue(1);
    const Picture still = settled(kDisplay);
    const Place knob{634, 495};
    XDoTool::drag(knob, {knob.x, knob.y - 100});
    EXPECT_TRUE(until([&] { return plain(kSpectrumProjectorFrequency) > 0.0F; }));
    XDoTool::moveTo(kNowhere);
    EXPECT_TRUE(changes(kDisplay, still, 100));
    EXPECT_NEAR(analyser_->projectorFrequency(),
                static_cast<float>(projectorHz(double{plain(kSpectrumProjectorFrequency)}, kRate)),
                0.5F);
    settled(kDisplay);
    keep("spectrum-projector");
}

TEST_F(DisplaySession, TheWaterfallTurnsUnderTheMouse) {
    showPage(1);
    parameter(kSpectrumDrawWaterfall).setValue(1);
    listen(900);
    parameter(kSpectrumFreeze).setValue(1);
    const Picture before = settled(kDisplay);
    keep("waterfall");
    const float angle = plain(kSpectrumRotate);
    host_.calls.clear();
    XDoTool::drag({600, 250}, {500, 250});
    EXPECT_TRUE(until([&] { return plain(kSpectrumRotate) < angle; }));
    XDoTool::moveTo(kNowhere);
    EXPECT_NEAR(plain(kSpectrumRotate), angle - 0.35F, 0.01F);
    EXPECT_TRUE(changes(kDisplay, before, 5000));
    step(3);
    const int index = parameter(kSpectrumRotate).getHostIndex();
    ASSERT_FALSE(host_.calls.empty());
    EXPECT_EQ(host_.calls.front(), hostCall("begin", index));
    EXPECT_EQ(host_.calls.back(), hostCall("end", index));
    settled(kDisplay);
    keep("waterfall-turned");
}

TEST_F(DisplaySession, OversAreCountedAndAClickForgetsThem) {
    const Picture none = settled(kOverBox);
    EXPECT_EQ(redPixels(kOverBox), 0);
    const auto loud = orvel_test::sine(48000, 100.0, 48000.0, 1.4);
    play({loud, loud});
    ASSERT_TRUE(until([&] { return redPixels(kOverBox) > 200; }));
    listen(300);
    keep("overs");
    play({std::vector<float>(48000), std::vector<float>(48000)});
    listen(200);
    for (const int page : {0, 2}) {
        showPage(page);
        XDoTool::click({72, 300}); // anywhere in the meter
        EXPECT_TRUE(until([&] { return look(kOverBox) == none; })) << page;
        play({loud, loud});
        ASSERT_TRUE(until([&] { return redPixels(kOverBox) > 200; }));
        play({std::vector<float>(48000), std::vector<float>(48000)});
        listen(200);
    }
    // The other pair's box counts the same and is set back with it.
    const CRect other = kOverBox.moved(865.0 - 10.0, 0.0);
    XDoTool::click({927, 300});
    EXPECT_TRUE(until([&] { return redPixels(other) == 0 && look(kOverBox) == none; }));
}

TEST_F(DisplaySession, EachMeteringModeHasItsOwnLook) {
    const auto tone = orvel_test::sine(48000, 1000.0, 48000.0, 0.25);
    play({tone, tone});
    const CRect scale = CRect::ofSize(10.0, 95.0, 17.0, 280.0);
    std::vector<Picture> looks;
    Picture first;
    for (int mode = 0; mode < 5; ++mode) {
        if (mode > 0) XDoTool::click({258, 495}, 4);
        ASSERT_TRUE(until([&] { return parameter(kGlobalMeteringMode).getIntValue() == mode; }));
        listen(300);
        keep("metering-" + std::to_string(mode));
        for (const Picture& earlier : looks)
            EXPECT_GT(differences(look(kMeter), earlier), 300) << mode;
        looks.push_back(look(kMeter));
        if (mode == 0) first = look(scale);
    }
    XDoTool::doubleClick({258, 495});
    EXPECT_TRUE(until([&] { return look(scale) == first; })) << "the first scale again";
}

} // namespace
} // namespace Orvel
