// Presets through the browser as a user handles them. After every step all files on the disk are
// compared with what they should be: nothing may get lost.
#include "FakeDesktop.h"
#include "Session.h"
#include "core/Paths.h"

namespace Orvel {
namespace {

class PresetSession : public Session {
  protected:
    // Rows of the browser's menu, and the lines above them.
    struct Row {
        int row;
        int separators;
    };
    static constexpr Row kSave{0, 0};
    static constexpr Row kSaveAs{1, 0};
    static constexpr Row kDelete{2, 1};
    static constexpr Row kRename{3, 1};
    static constexpr Row kDefault{5, 3};
    static constexpr Row preset(int number) { return {6 + number, 4}; } // folders count, too

    static constexpr Place kName{150, 24};
    static constexpr Place kPrevious{272, 24};
    static constexpr Place kNext{290, 24};
    static constexpr CRect kNameField{70.0, 15.0, 235.0, 32.0};

    void SetUp() override {
        std::filesystem::create_directory(presets());
        Core::setContentLocation(presets().c_str());
        Session::SetUp();
    }
    std::filesystem::path presets() const { return desktop_.folder / "presets"; }
    FakeDesktop::Files files() const { return FakeDesktop::filesIn(presets()); }
    bool nameIs(const std::string& name) {
        return until([&] { return instrument_->editor().currentPresetName() == name; });
    }
    bool rmsIs(float milliseconds) {
        return until([&] { return plain(kGlobalRMSLength) == milliseconds; });
    }
    void typeRms(const std::string& value) {
        XDoTool::clickAndType({330, 521}, value, "Return");
        ASSERT_TRUE(rmsIs(std::stof(value)));
    }
    void choose(Row row) {
        XDoTool::click(rowOf(openMenu(kName), row.row, row.separators));
        ASSERT_TRUE(waitForNoMenu());
    }
    void saveAs(const std::filesystem::path& path) {
        desktop_.answer(path);
        choose(kSaveAs);
    }
    void rename(const char* name, const char* end) {
        const Picture before = settled(kNameField);
        choose(kRename);
        ASSERT_TRUE(changes(kNameField, before, 20));
        XDoTool::type(name);
        step(5);
        XDoTool::key(end);
    }
    /// Chooses the row, reads the question, and answers it.
    void answer(Row row, const std::vector<std::string>& question, int button) {
        choose(row);
        ASSERT_TRUE(waitForMessage());
        EXPECT_TRUE(messageSays(question)) << question.front();
        keep("preset-" + question.front());
        pressMessageButton(button);
    }
    /// Two presets, "Höhe 1" with an RMS length of 100 ms and "Zwei" with 200 ms; "Zwei" is chosen.
    void makeTwo() {
        const Picture named = settled(kNameField);
        typeRms("100");
        saveAs(presets() / "Höhe 1.fxPreset");
        ASSERT_TRUE(until([&] { return files().contains("Höhe 1.fxPreset"); }));
        typeRms("200");
        saveAs(presets() / "Zwei"); // the extension comes by itself
        ASSERT_TRUE(until([&] { return files().contains("Zwei.fxPreset"); }));
        ASSERT_TRUE(nameIs("Zwei"));
        EXPECT_TRUE(changes(kNameField, named, 30)) << "the name shows";
        EXPECT_THAT(desktop_.asked(), testing::HasSubstr(presets().string()));
    }

    FakeDesktop desktop_;
};

TEST_F(PresetSession, FromTheFirstSaveToTheLastDelete) {
    makeTwo();
    FakeDesktop::Files expected = files();

    // Around and around with the arrows; back from the menu; the defaults.
    for (const Place arrow : {kPrevious, kNext}) {
        XDoTool::click(arrow);
        EXPECT_TRUE(rmsIs(100) && nameIs("Höhe 1"));
        XDoTool::click({arrow.x + 1, arrow.y + 4});
        EXPECT_TRUE(rmsIs(200) && nameIs("Zwei"));
    }
    choose(kDefault);
    EXPECT_TRUE(rmsIs(500) && nameIs("Default"));
    choose(preset(1));
    EXPECT_TRUE(rmsIs(200) && nameIs("Zwei")) << "the menu brings the saved value back";

    // Overwriting asks.
    typeRms("250");
    const std::vector<std::string> overwrite{"Preset Exists",
                                             "File \"Zwei\" alread Exists, overwrite ?",
                                             "(" + (presets() / "Zwei.fxPreset").string() + ")"};
    answer(kSave, overwrite, 1); // "No"
    EXPECT_EQ(files(), expected);
    answer(kSave, overwrite, 0); // "Yes"
    ASSERT_TRUE(until([&] { return files() != expected; }));
    expected["Zwei.fxPreset"] = files()["Zwei.fxPreset"];
    EXPECT_EQ(files(), expected);
    typeRms("400");
    choose(preset(1));
    EXPECT_TRUE(rmsIs(250)) << "what was written is what was set";

    // Another name, and names that cannot be.
    rename("Drei", "Escape");
    step(20);
    EXPECT_EQ(files(), expected);
    rename("Drei", "Return");
    ASSERT_TRUE(nameIs("Drei"));
    expected["Drei.fxPreset"] = expected["Zwei.fxPreset"];
    expected.erase("Zwei.fxPreset");
    EXPECT_EQ(files(), expected);
    XDoTool::click(kPrevious);
    ASSERT_TRUE(nameIs("Höhe 1"));
    for (const auto& [name, says] : {std::pair("Drei", "The preset keeps its name."),
                                     {"a/b", "The name of a preset cannot contain / or \\."},
                                     {".x", "The name of a preset cannot begin with a dot."}}) {
        rename(name, "Return");
        ASSERT_TRUE(waitForMessage()) << name;
        EXPECT_TRUE(messageSays({"Error!", says})) << name;
        pressMessageButton(0);
        EXPECT_TRUE(nameIs("Höhe 1"));
        EXPECT_EQ(files(), expected) << name;
    }
    choose(preset(0));
    ASSERT_TRUE(nameIs("Drei"));

    // The window comes back with the name.
    const Picture named = settled(kNameField);
    close();
    open();
    EXPECT_TRUE(nameIs("Drei"));
    EXPECT_TRUE(until([&] { return look(kNameField) == named; }));

    // Deleting asks.
    choose(kDelete);
    ASSERT_TRUE(waitForMessage());
    XDoTool::key("Escape");
    ASSERT_TRUE(waitForNoMessage());
    EXPECT_EQ(files(), expected);
    choose(preset(0)); // none is chosen after the question, whatever the answer
    ASSERT_TRUE(nameIs("Drei"));
    choose(kDelete);
    ASSERT_TRUE(waitForMessage());
    keep("preset-delete");
    XDoTool::key("Return"); // "Yes"
    expected.erase("Drei.fxPreset");
    EXPECT_TRUE(until([&] { return files() == expected; }));
    EXPECT_EQ(plain(kGlobalRMSLength), 250.0F) << "what is heard stays";
}

// No user, not even root, can write there; a folder whose permissions forbid it is the same to us.
TEST_F(PresetSession, WhatCannotBeSavedIsToldOfAndCancelSavesNothing) {
    makeTwo();
    const FakeDesktop::Files saved = files();
    saveAs("/proc/Third.fxPreset");
    ASSERT_TRUE(waitForMessage());
    EXPECT_TRUE(messageSays(
        {"Error!", "Some error occurred while saving Preset!", "/proc/Third.fxPreset"}));
    XDoTool::key("Return");
    ASSERT_TRUE(waitForNoMessage());
    saveAs({}); // "Cancel"
    step(20);
    EXPECT_EQ(message(), nullptr);
    EXPECT_EQ(files(), saved);
    EXPECT_EQ(plain(kGlobalRMSLength), 200.0F);
}

TEST_F(PresetSession, FoldersAreSubMenusAndTheSystemPageChoosesTheirPlace) {
    makeTwo();
    const std::filesystem::path other = desktop_.folder / "Andere Töne";
    std::filesystem::create_directories(other / "Drums");
    std::filesystem::copy(presets() / "Höhe 1.fxPreset", other / "Drums/Snare.fxPreset");
    showPage(3);
    constexpr CRect kPath{345.0, 228.0, 655.0, 250.0};
    const Picture before = settled(kPath);
    desktop_.answer({}); // "Cancel"
    XDoTool::click({717, 238});
    ASSERT_TRUE(until([&] { return desktop_.asked().find("--directory") != std::string::npos; }));
    step(20);
    EXPECT_EQ(look(kPath), before);
    desktop_.answer(other);
    XDoTool::click({717, 244});
    EXPECT_TRUE(changes(kPath, before, 30));
    EXPECT_EQ(Core::getContentLocation(), other.string() + "/");
    keep("system-folder");
    XDoTool::click({815, 238}); // "Open..."
    EXPECT_TRUE(until([&] { return desktop_.opened() == other.string() + "/"; }));

    const Row folder = preset(0); // the browser is there already
    XDoTool::moveTo(rowOf(openMenu(kName), folder.row, folder.separators));
    ASSERT_TRUE(until([&] { return menus().size() == 2; }));
    keep("preset-folder");
    XDoTool::click(rowOf(menus().back(), 0));
    EXPECT_TRUE(rmsIs(100) && nameIs("Snare"));
}

} // namespace
} // namespace Orvel
