// The preset browser: clicks and keys in, files and texts out.
#include "presets/PresetBrowser.h"
#include "PresetFixture.h"
#include "ToolkitTest.h"
#include "assets/Archives.h"
#include "controls/MessageBox.h"
#include "draw/PictureCache.h"
#include "draw/ResourceWriter.h"

#include <gmock/gmock.h>

namespace Sorel {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;

class PresetBrowserTest : public ToolkitTest {
  protected:
    PresetBrowserTest() {
        std::string name = (fs::temp_directory_path() / "orvel-presets-XXXXXX").string();
        folder_ = mkdtemp(name.data());
    }
    ~PresetBrowserTest() override {
        editor_.reset();
        fs::remove_all(folder_);
    }

    void openBrowser() {
        presets_.SetPresetFolder(folder_.c_str());
        editor_ = std::make_unique<TestEditor>([&](CFrame& frame) {
            CPresetBrowser::CInfo info;
            info.size = CRect::ofSize(63.0, 13.0, 235.0, 21.0);
            info.arrowDown = pictures_.getBitmap("ArrowDownBig.png");
            info.arrowLeft = pictures_.getBitmap("ArrowLeftBig.png");
            info.arrowRight = pictures_.getBitmap("ArrowRightBig.png");
            browser_ = new CPresetBrowser(info, presets_);
            frame.addView(browser_);
        });
        editor_->setRect(1000.0, 545.0);
        editor_->openFrame(nullptr);
        idle();
    }
    void add(const std::string& file) {
        fs::create_directories((folder_ / file).parent_path());
        std::ofstream(folder_ / file) << presetFile("stored", file);
    }
    std::string content(const std::string& file) {
        std::ifstream in(folder_ / file, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    bool exists(const std::string& file) { return fs::exists(folder_ / file); }

    bool choose(const std::string& item) {
        window().click({100.0, 23.0});
        idle();
        const bool chosen = window().chooseMenuItem(item);
        idle();
        if (!chosen) window().key(Key::kEscape);
        idle();
        return chosen;
    }
    /// The question that is open, if any, is answered by its first button or its last.
    bool answer(bool yes) {
        const bool asked = isAsked();
        window().key(yes ? Key::kReturn : Key::kEscape);
        idle();
        return asked;
    }
    bool isAsked() { return frame().getModalView() != nullptr; }
    void rename(const std::string& name) {
        ASSERT_TRUE(choose("Rename Preset"));
        ASSERT_TRUE(browser_->isTyping());
        window().type(name); // over the old one, which is selected
        window().key(Key::kReturn);
        idle();
    }
    void next() { window().click({290.0, 23.0}); }
    void previous() { window().click({270.0, 23.0}); }
    std::string shown() { return browser_->getText(); }

    fs::path folder_;
    TextPlugin plugin_;
    std::vector<std::byte> factory_ = makeFactory();
    CSingleFXPresetInterface presets_{&plugin_, &plugin_, factory_};
    CPictureCache pictures_{Assets::pictureArchive()};
    CPresetBrowser* browser_ = nullptr;

  private:
    static std::vector<std::byte> makeFactory() {
        const std::vector<std::byte> one(1, std::byte{'F'});
        const std::vector<ResourceEntry> entries = {{"presets/Mix/f.fxPreset", one},
                                                    {"presets/a.fxPreset", one},
                                                    {"presets/../escaped.fxPreset", one},
                                                    {"picture.png", one}};
        std::string error;
        return writeResourceArchive(entries, 0, error);
    }
};

TEST_F(PresetBrowserTest, TheMenuShowsCommandsFoldersAndPresets) {
    for (const char* file : {"b.fxPreset", "a.fxPreset", "Mix/k.fxPreset", "Mix/l.fxPreset"})
        add(file);
    openBrowser();
    EXPECT_EQ(plugin_.name, shown());
    window().click({200.0, 30.0});
    idle();
    EXPECT_THAT(window().menuTitles(),
                ElementsAre("Save Preset", "Save Preset as..", "", "Delete Preset", "Rename Preset",
                            "", "Restore Factory Presets", "", "Default Settings", "", "Mix",
                            "1 - a", "2 - b"));
    EXPECT_FALSE(window().chooseMenuItem("Rename Preset")); // there is no current one
    ASSERT_TRUE(window().chooseMenuItem("Mix/2 - l"));
    idle();
    EXPECT_EQ(plugin_.state, "Mix/l.fxPreset");
    EXPECT_EQ(shown(), "l"); // the file's name, not the one stored in it
    EXPECT_EQ(plugin_.name, "l");
    ASSERT_TRUE(choose("1 - a"));
    EXPECT_EQ(plugin_.state, "a.fxPreset");
    EXPECT_TRUE(choose("Default Settings"));
    EXPECT_EQ(shown(), "Default");
    EXPECT_EQ(presets_.GetCurrentPresetIndex(), -1);
}

TEST_F(PresetBrowserTest, TheArrowsGoAroundInTheOrderOfTheMenu) {
    openBrowser();
    next();
    EXPECT_EQ(plugin_.loads, 0); // nothing there
    for (const char* file : {"a.fxPreset", "Mix/m.fxPreset", "z.fxPreset"})
        add(file);
    std::vector<std::string> names;
    for (int i = 0; i < 4; ++i)
        next(), names.push_back(shown());
    previous(), names.push_back(shown());
    previous(), names.push_back(shown());
    EXPECT_THAT(names, ElementsAre("m", "a", "z", "m", "z", "a"));
    window().wheel({100.0, 23.0}, 1.0F);
    EXPECT_EQ(shown(), "a");
    fs::remove(folder_ / "a.fxPreset");
    previous(); // none is current: from the end
    EXPECT_EQ(shown(), "z");
    // A menu ends somewhere, the arrows reach all.
    for (int i = 1; i <= 300; ++i)
        add("z/" + std::to_string(i) + ".fxPreset");
    window().click({100.0, 23.0});
    idle();
    EXPECT_TRUE(window().chooseMenuItem("z/255 - 255"));
    idle();
    for (int i = 0; i < 45; ++i)
        next();
    EXPECT_EQ(shown(), "300");
    window().click({100.0, 23.0});
    idle();
    EXPECT_FALSE(window().chooseMenuItem("z/256 - 256"));
}

TEST_F(PresetBrowserTest, SavingAsksBeforeItOverwrites) {
    openBrowser();
    presets_.SetPresetName("Größe");
    ASSERT_TRUE(choose("Save Preset"));
    EXPECT_FALSE(isAsked());
    EXPECT_EQ(content("Größe.fxPreset"), presetFile("Größe", "start"));
    EXPECT_EQ(presets_.GetCurrentPresetIndex(), 0);

    plugin_.state = "changed";
    ASSERT_TRUE(choose("Save Preset"));
    EXPECT_TRUE(answer(false));
    EXPECT_EQ(content("Größe.fxPreset"), presetFile("Größe", "start"));
    ASSERT_TRUE(choose("Save Preset"));
    EXPECT_TRUE(answer(true));
    EXPECT_EQ(content("Größe.fxPreset"), presetFile("Größe", "changed"));

    // A preset in a folder stays there, under another name too.
    add("Mix/k.fxPreset");
    next();
    presets_.SetPresetName("new");
    ASSERT_TRUE(choose("Save Preset"));
    EXPECT_EQ(content("Mix/new.fxPreset"), presetFile("new", "Mix/k.fxPreset"));
    presets_.SetPresetName("../out");
    ASSERT_TRUE(choose("Save Preset"));
    EXPECT_TRUE(answer(true)); // a message
    EXPECT_FALSE(fs::exists(folder_ / "../out.fxPreset"));
}

TEST_F(PresetBrowserTest, SaveAsTakesTheChosenPath) {
    openBrowser();
    ASSERT_TRUE(choose("Save Preset as.."));
    EXPECT_EQ(platform_.lastFileDialog().title, "Save Preset as...");
    EXPECT_EQ(platform_.lastFileDialog().initialPath, folder_.string() + "/");
    EXPECT_EQ(platform_.lastFileDialog().defaultSaveName, "Default");
    EXPECT_EQ(platform_.lastFileDialog().extensions.at(0).extension, "fxPreset");

    add("a.b.fxPreset");
    platform_.setFileDialogAnswer({{(folder_ / "a.b").string()}, ""});
    ASSERT_TRUE(choose("Save Preset as.."));
    ASSERT_TRUE(isAsked()); // about the file that would be written
    answer(true);
    EXPECT_EQ(content("a.b.fxPreset"), presetFile("a.b", "start"));
    EXPECT_EQ(shown(), "a.b");
    EXPECT_EQ(presets_.GetCurrentPresetIndex(), 0);

    for (const FileDialogAnswer& problem :
         {FileDialogAnswer{{(folder_ / ".fxPreset").string()}, ""}, // has no name
          FileDialogAnswer{{}, "No dialog is installed."}}) {
        platform_.setFileDialogAnswer(problem);
        ASSERT_TRUE(choose("Save Preset as.."));
        EXPECT_TRUE(answer(true));
    }
}

TEST_F(PresetBrowserTest, ASaveThatFailsSaysSoAndKeepsTheOldFile) {
    add("a.fxPreset");
    openBrowser();
    next();
    plugin_.state = ""; // nothing to save
    ASSERT_TRUE(choose("Save Preset"));
    EXPECT_TRUE(answer(true));
    EXPECT_TRUE(answer(true)); // the message
    EXPECT_EQ(content("a.fxPreset"), presetFile("stored", "a.fxPreset"));

    plugin_.state = "x";
    std::ofstream(folder_ / "file") << "in the way";
    platform_.setFileDialogAnswer({{(folder_ / "file/b").string()}, ""});
    ASSERT_TRUE(choose("Save Preset as.."));
    EXPECT_TRUE(answer(true));
    EXPECT_EQ(content("file"), "in the way");
    EXPECT_EQ(shown(), "a");
    presets_.SetPresetName(std::string(250, 'n').c_str()); // longer than a file's may be
    ASSERT_TRUE(choose("Save Preset"));
    EXPECT_TRUE(answer(true));
    EXPECT_FALSE(isAsked());
}

TEST_F(PresetBrowserTest, WhatWasSavedIsCurrentHoweverItWasReached) {
    add("real/a.fxPreset");
    fs::create_directory_symlink("real", folder_ / "link");
    const fs::path real = folder_ / "real";
    folder_ /= "link";
    openBrowser();
    next();
    platform_.setFileDialogAnswer({{(real / "new").string()}, ""});
    ASSERT_TRUE(choose("Save Preset as.."));
    rename("renamed");
    EXPECT_TRUE(exists("a.fxPreset") && exists("renamed.fxPreset") && !exists("new.fxPreset"));
    // Where the list does not reach there is nothing to rename or delete.
    platform_.setFileDialogAnswer({{(real / "x/y/deep").string()}, ""});
    ASSERT_TRUE(choose("Save Preset as.."));
    EXPECT_EQ(shown(), "deep");
    EXPECT_FALSE(choose("Delete Preset"));
    folder_ = real.parent_path();
}

TEST_F(PresetBrowserTest, DefaultIsNoPreset) {
    add("Mix/a.fxPreset");
    add("b.fxPreset");
    openBrowser();
    platform_.setFileDialogAnswer({{(folder_ / "Default").string()}, ""});
    ASSERT_TRUE(choose("Save Preset"));
    EXPECT_EQ(platform_.lastFileDialog().title, "Save Preset as...");
    EXPECT_TRUE(answer(true)); // the name is refused
    EXPECT_FALSE(exists("Default.fxPreset"));
    next();
    rename("Default"); // the list shows it there
    EXPECT_TRUE(exists("Mix/Default.fxPreset"));
    next();
    rename("Default");
    EXPECT_TRUE(answer(true));
    EXPECT_TRUE(exists("b.fxPreset"));
    EXPECT_EQ(shown(), "b");
}

TEST_F(PresetBrowserTest, APresetThatCannotBeReadIsToldOfAndPassed) {
    for (const char* file : {"a.fxPreset", "b.fxPreset", "c.fxPreset"})
        add(file);
    openBrowser();
    next();
    previous(), previous(); // "b", with "a" before it
    fs::permissions(folder_ / "a.fxPreset", fs::perms::none);
    const WithoutRights user(folder_);
    previous();
    EXPECT_TRUE(answer(true));
    EXPECT_EQ(shown(), "b");
    EXPECT_STREQ(presets_.GetPresetName(presets_.GetCurrentPresetIndex()), "b");
    previous();
    EXPECT_EQ(shown(), "c");
}

TEST_F(PresetBrowserTest, QuestionsWaitForTheirTurn) {
    add("a.fxPreset");
    openBrowser();
    platform_.setFileDialogAnswer({{(folder_ / "a").string()}, ""});
    const auto saveAsMeanwhile = [this] {
        window().click({100.0, 23.0});
        idle();
        ASSERT_TRUE(window().chooseMenuItem("Save Preset as.."));
        CMessageBox::show(frame(), "Other", "", {"OK"}, {});
        idle(), idle();
    };
    saveAsMeanwhile();
    EXPECT_TRUE(answer(true)); // the other one
    EXPECT_TRUE(answer(true));
    EXPECT_EQ(content("a.fxPreset"), presetFile("a", "start"));
    plugin_.state = "changed";
    saveAsMeanwhile();
    editor_->closeFrame(); // with both
    EXPECT_EQ(content("a.fxPreset"), presetFile("a", "start"));
}

TEST_F(PresetBrowserTest, RenamingMovesTheFileAndNeverReplacesOne) {
    add("a.fxPreset");
    add("b.fxPreset");
    openBrowser();
    next();
    rename("Zoë");
    EXPECT_EQ(shown(), "Zoë");
    EXPECT_EQ(plugin_.name, "Zoë");
    EXPECT_EQ(content("Zoë.fxPreset"), presetFile("stored", "a.fxPreset"));
    EXPECT_FALSE(exists("a.fxPreset"));
    for (const char* refused : {"b", "x/y", ".x", " "}) {
        rename(refused);
        EXPECT_TRUE(answer(true)) << refused; // a message
        EXPECT_EQ(shown(), "Zoë");
    }
    EXPECT_EQ(content("b.fxPreset"), presetFile("stored", "b.fxPreset"));
    ASSERT_TRUE(choose("Rename Preset"));
    window().type("given up");
    window().key(Key::kEscape);
    ASSERT_TRUE(choose("Rename Preset"));
    window().type("by a click");
    window().click({600.0, 300.0});
    EXPECT_TRUE(exists("by a click.fxPreset"));
    // A state from outside ends typing.
    ASSERT_TRUE(choose("Rename Preset"));
    window().type("lost");
    presets_.showStoredName();
    EXPECT_FALSE(browser_->isTyping());
    EXPECT_TRUE(exists("by a click.fxPreset"));
}

TEST_F(PresetBrowserTest, DeletingAndRestoringAskFirst) {
    add("a.fxPreset");
    openBrowser();
    next();
    ASSERT_TRUE(choose("Delete Preset"));
    EXPECT_TRUE(answer(false));
    EXPECT_TRUE(exists("a.fxPreset"));
    EXPECT_EQ(presets_.GetCurrentPresetIndex(), -1);
    next();
    ASSERT_TRUE(choose("Delete Preset"));
    add("0.fxPreset"); // another index for the same file
    presets_.RescanPresets();
    EXPECT_TRUE(answer(true));
    EXPECT_FALSE(exists("a.fxPreset"));
    EXPECT_TRUE(exists("0.fxPreset"));

    ASSERT_TRUE(choose("Restore Factory Presets"));
    EXPECT_TRUE(answer(false));
    EXPECT_FALSE(exists("a.fxPreset"));
    ASSERT_TRUE(choose("Restore Factory Presets"));
    EXPECT_TRUE(answer(true));
    EXPECT_FALSE(isAsked());
    EXPECT_EQ(content("a.fxPreset"), "F");
    EXPECT_EQ(content("Mix/f.fxPreset"), "F");
    EXPECT_FALSE(fs::exists(folder_.parent_path() / "escaped.fxPreset"));
    EXPECT_EQ(presets_.GetPresetCount(), 3);
}

TEST_F(PresetBrowserTest, TheWindowMayCloseAtAnyTime) {
    add("a.fxPreset");
    const std::string before = content("a.fxPreset");
    for (const char* item : {"Delete Preset", "Save Preset", "Restore Factory Presets",
                             "Save Preset as..", "Rename Preset", ""}) {
        openBrowser();
        next();
        window().click({100.0, 23.0});
        idle();
        EXPECT_EQ(window().chooseMenuItem(item), *item != 0) << item; // "": the menu stays open
        if (*item != 0) idle();
        editor_->closeFrame();
        EXPECT_EQ(presets_.browser(), nullptr);
        EXPECT_EQ(content("a.fxPreset"), before);
    }
    // The browser alone goes, with its question open.
    openBrowser();
    next();
    ASSERT_TRUE(choose("Save Preset"));
    plugin_.state = "changed";
    frame().removeView(browser_, true);
    EXPECT_TRUE(answer(true));
    EXPECT_EQ(content("a.fxPreset"), before);
}

TEST_F(PresetBrowserTest, PressedArrowsAndOpenFieldsTurnGold) {
    add("a.fxPreset");
    openBrowser();
    const auto isGold = [&](int x, int y) {
        window().moveMouse({500.0, 300.0});
        idle(), idle();
        return (pixel(x, y) >> 16) > (pixel(x, y) & 0xFF) + 60;
    };
    window().press({270.0, 23.0});
    EXPECT_TRUE(isGold(269, 23) && !isGold(150, 13)); // the chevron's point
    window().releaseButtons({500.0, 300.0});
    window().click({100.0, 23.0});
    EXPECT_TRUE(!isGold(269, 23) && isGold(150, 13)); // the outline
    window().key(Key::kEscape);
    EXPECT_FALSE(isGold(150, 13));
    const std::uint32_t field = pixel(240, 15);
    presets_.SetPresetName(std::string(250, 'W').c_str());
    idle();
    EXPECT_EQ(pixel(240, 15), field); // the name ends before the arrow
}

} // namespace
} // namespace Sorel
