// Pages, keys and the system page, and windows that close in the middle of something.
#include "Session.h"
#include "core/Paths.h"
#include "core/Settings.h"

#include <filesystem>
#include <fstream>
#include <set>

namespace Orvel {
namespace {

constexpr CRect kGainText{154.0, 515.0, 218.0, 528.0};
constexpr Place kGainValue{186, 521};

class LifeSession : public Session {};

TEST_F(LifeSession, EachButtonShowsItsPageAndLightsUp) {
    std::vector<Picture> pages;
    for (const int page : {1, 2, 3, 0}) {
        showPage(page);
        EXPECT_EQ(analyser().activePage(), page);
        for (int other = 0; other < COrvelScopeEditor::kNumPages; ++other)
            EXPECT_EQ(isGold(pixel({371 + 119 * other, 33})), other == page) << page << other;
        listen(400);
        keep("page-" + std::to_string(page));
        const Picture display = look(kDisplay);
        for (const Picture& earlier : pages)
            EXPECT_GT(differences(display, earlier), 5000) << page;
        pages.push_back(display);
        // What measures moves, what does not stands still.
        listen(100);
        EXPECT_EQ(differences(look(kDisplay), display) > 100, page != 3) << page;
    }
}

TEST_F(LifeSession, KeysThatNothingUsesGoToTheProgramAround) {
    struct Program final : Vardo::IEditorHost {
        bool editorKeyDown(const Vardo::KeyEvent& key) override {
            keys += static_cast<char>(key.character);
            return true;
        }
        void editorCloseRequested() override {}
        bool editorFilesDropped(const std::vector<std::string>&) override { return false; }
        std::string keys;
    } program;
    instrument_->editor().setHost(&program);
    XDoTool::click({600, 440}); // the ground: the window has the keyboard
    XDoTool::type("12 4");
    EXPECT_TRUE(until([&] { return program.keys == "12 4"; })) << program.keys;
    XDoTool::clickAndType(kGainValue, "3", "Escape"); // into a value
    step(5);
    XDoTool::type("2");
    EXPECT_TRUE(until([&] { return program.keys == "12 42"; })) << program.keys;
    instrument_->editor().setHost(nullptr);
}

TEST_F(LifeSession, TheControlsOfTheSystemPage) {
    showPage(3);
    constexpr CRect kBox{338.0, 150.0, 358.0, 174.0};
    const bool before = analyser().isThreaded();
    const Picture shown = settled(kBox);
    for (const bool expected : {!before, before}) {
        XDoTool::click({348, 162});
        EXPECT_TRUE(until([&] { return analyser().isThreaded() == expected; }));
        char value[Core::kSettingBufferSize];
        ASSERT_TRUE(Core::readSetting(Core::settingsPath(), "THREADING", value, nullptr));
        EXPECT_STREQ(value, expected ? "TRUE" : "FALSE");
        EXPECT_TRUE(until([&] { return (look(kBox) == shown) == (expected == before); }));
    }
    constexpr CRect kStatus{340.0, 316.0, 660.0, 332.0};
    const Picture silent = settled(kStatus);
    XDoTool::click({815, 314}); // "Support"
    EXPECT_TRUE(changes(kStatus, silent, 20));
    ASSERT_EQ(openedOnDesktop_.size(), 1u);
    EXPECT_TRUE(std::filesystem::is_directory(openedOnDesktop_[0])) << "the report's folder";
    keep("system-support");
    const Picture reported = settled(kStatus);
    XDoTool::click({717, 314}); // "Update", without a server
    EXPECT_TRUE(changes(kStatus, reported, 20));
}

TEST_F(LifeSession, ClosingGivesUpWhatWasBeingTyped) {
    for (int round = 0; round < 3; ++round) {
        const Picture shown = settled(kGainText);
        XDoTool::click(kGainValue);
        ASSERT_TRUE(changes(kGainText, shown, 20)) << round;
        XDoTool::type("-12");
        step(5);
        close();
        EXPECT_EQ(plain(kGlobalInputGain), 1.0F) << round;
        XDoTool::moveTo(kNowhere);
        step(5); // the engine goes on alone
        open();
        EXPECT_TRUE(until([&] { return look(kGainText) == shown; })) << round;
    }
    // And the new window hears what is typed.
    XDoTool::clickAndType(kGainValue, "-12", "Return");
    EXPECT_TRUE(until([&] { return plain(kGlobalInputGain) < 0.3F; }));
}

TEST_F(LifeSession, ClosingTakesItsMenusAndMessagesAlong) {
    struct Opening {
        int page;
        Place where;
        int button;
    };
    for (const Opening& opening :
         {Opening{0, {150, 24}, 1}, {1, {860, 507}, 1}, {0, {72, 200}, 3}}) {
        showPage(opening.page);
        openMenu(opening.where, opening.button);
        close();
        EXPECT_TRUE(menus().empty());
        open();
        showPage(2); // the pointer is nobody's any more: clicks are heard
    }
    // A question, too, is not answered by closing.
    const std::filesystem::path presets = Core::getContentLocation();
    std::filesystem::create_directories(presets);
    std::ofstream(presets / "a.fxPreset") << "any";
    XDoTool::click({290, 24});                        // the next preset
    XDoTool::click(rowOf(openMenu({150, 24}), 2, 1)); // "Delete Preset"
    ASSERT_TRUE(waitForMessage());
    keep("message-delete");
    close();
    open();
    EXPECT_EQ(message(), nullptr);
    EXPECT_TRUE(std::filesystem::remove(presets / "a.fxPreset")) << "it is still there";
    showPage(0);
}

} // namespace
} // namespace Orvel
