// The system page, and windows that close and open again in the middle of something.
#include "Session.h"
#include "core/Paths.h"
#include "core/Settings.h"

#include <filesystem>

namespace Orvel {
namespace {

using Sorel::CRect;

class LifeSession : public Session {};

TEST_F(LifeSession, TheBoxOfTheSystemPageSwitchesAndIsRemembered) {
    showPage(3);
    const CRect box = CRect::ofSize(338.0, 150.0, 20.0, 24.0);
    const bool before = analyser_->isThreaded();
    const Picture shown = settled(box);
    for (const bool expected : {!before, before}) {
        XDoTool::click({348, 162});
        EXPECT_TRUE(until([&] { return analyser_->isThreaded() == expected; }));
        char value[Core::kSettingBufferSize];
        ASSERT_TRUE(Core::readSetting(Core::settingsPath(), "THREADING", value, nullptr));
        EXPECT_STREQ(value, expected ? "TRUE" : "FALSE");
        EXPECT_TRUE(until([&] { return (look(box) == shown) == (expected == before); }));
    }
}

TEST_F(LifeSession, SupportAndUpdateAnswerInTheStatusLine) {
    showPage(3);
    const CRect status = CRect::ofSize(340.0, 316.0, 320.0, 16.0);
    const Picture before = settled(status);
    XDoTool::click({815, 314}); // "Support"
    EXPECT_TRUE(until([&] { return openedOnDesktop_.size() == 1; })) << "the report's folder";
    EXPECT_TRUE(changes(status, before, 20));
    EXPECT_TRUE(!openedOnDesktop_.empty() && std::filesystem::is_directory(openedOnDesktop_[0]));
    keep("system-support");
    const Picture reported = settled(status);
    XDoTool::click({717, 314}); // "Update", without a server
    EXPECT_TRUE(changes(status, reported, 20));
    EXPECT_EQ(openedOnDesktop_.size(), 1u);
    settled(status);
    keep("system-update");
}

TEST_F(LifeSession, ClosingGivesUpWhatWasBeingTyped) {
    const CRect gain = CRect::ofSize(154.0, 515.0, 64.0, 13.0);
    for (int round = 0; round < 3; ++round) {
        const Picture shown = settled(gain);
        XDoTool::click({186, 521});
        ASSERT_TRUE(changes(gain, shown, 20)) << round;
        XDoTool::type("-12");
        step(5);
        if (round == 0) keep("typing");
        close();
        EXPECT_EQ(plain(kGlobalInputGain), 1.0F) << round;
        XDoTool::moveTo(kNowhere);
        step(5); // the engine goes on alone
        open();
        EXPECT_TRUE(until([&] { return look(gain) == shown; })) << round;
    }
    // And the new window hears what is typed.
    XDoTool::clickAndType({186, 521}, "-12", "Return");
    EXPECT_TRUE(until([&] { return plain(kGlobalInputGain) < 0.3F; }));
}

TEST_F(LifeSession, ClosingTakesItsMenusAndMessagesAlong) {
    struct Opening {
        int page;
        Place where;
        int button;
    };
    for (const Opening& opening :
         {Opening{0, {150, 24}, 1}, {0, {500, 200}, 3}, {1, {860, 507}, 1}, {1, {500, 200}, 3}}) {
        showPage(opening.page);
        XDoTool::click(opening.where, opening.button);
        ASSERT_TRUE(waitForMenu());
        close();
        EXPECT_TRUE(menus().empty());
        open();
        // The pointer is nobody's any more: the next click is heard.
        showPage(2);
    }
    // A question, too: "Restore Factory Presets" is not answered by closing.
    XDoTool::click({150, 24});
    ASSERT_TRUE(waitForMenu());
    XDoTool::click(rowOf(menus().front(), 4, 2));
    ASSERT_TRUE(waitForMessage());
    keep("message-restore");
    close();
    open();
    EXPECT_TRUE(message().isEmpty());
    showPage(0);
}

} // namespace
} // namespace Orvel
