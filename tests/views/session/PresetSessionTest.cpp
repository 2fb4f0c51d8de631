// Presets through the browser as a user handles them. After every step all files on the disk are
// compared with what they should be: nothing may get lost.
#include "FakeDesktop.h"
#include "Session.h"
#include "core/Paths.h"

namespace Orvel {
namespace {

using Sorel::CRect;

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
    static Row preset(int number) { return {6 + number, 4}; } // folders count, too

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
        return until([&] { return editor().currentPresetName() == name; });
    }
    bool rmsIs(float milliseconds) {
        return until([&] { return plain(kGlobalRMSLength) == milliseconds; });
    }
    void typeRms(const std::string& value) {
        XDoTool::clickAndType({330, 521}, value, "Return");
        ASSERT_TRUE(rmsIs(std::stof(value)));
    }
    void choose(Row row) {
        XDoTool::click(kName);
        ASSERT_TRUE(waitForMenu());
        XDoTool::click(rowOf(menus().front(), row.row, row.separators));
        ASSERT_TRUE(waitForNoMenu());
    }
    void saveAs(const std::filesystem::path& path) {
        desktop_.answer(path);
        choose(kSaveAs);
    }
    /// Two presets, "Höhe 1" with an RMS length of 100 ms and "Zwei" with 200 ms; "Zwei" is chosen.
    void makeTwo() {
        typeRms("100");
        saveAs(presets() / "Höhe 1.fxPreset");
        ASSERT_TRUE(until([&] { return files().size() == 1; }));
        typeRms("200");
        saveAs(presets() / "Zwei"); // the extension comes by itself
        ASSERT_TRUE(until([&] { return files().size() == 2; }));
        ASSERT_TRUE(nameIs("Zwei"));
    }

    FakeDesktop desktop_;
};

TEST_F(PresetSession, SaveStepAndReload) {
    const Picture named = settled(kNameField);
    makeTwo();
    const FakeDesktop::Files saved = files();
    EXPECT_TRUE(saved.contains("Höhe 1.fxPreset"));
    EXPECT_TRUE(saved.contains("Zwei.fxPreset"));
    EXPECT_THAT(desktop_.asked(), testing::HasSubstr("--save"));
    EXPECT_THAT(desktop_.asked(), testing::HasSubstr(presets().string()));
    EXPECT_TRUE(changes(kNameField, named, 30)) << "the name shows";
    keep("preset-saved");

    // Around and around with the arrows.
    const Picture two = settled(kNameField);
    for (const Place arrow : {kPrevious, kNext}) {
        XDoTool::click(arrow);
        EXPECT_TRUE(rmsIs(100) && nameIs("Höhe 1"));
        EXPECT_TRUE(changes(kNameField, two, 30));
        XDoTool::click({arrow.x + 1, arrow.y + 4});
        EXPECT_TRUE(rmsIs(200) && nameIs("Zwei"));
    }
    typeRms("333");
    XDoTool::click(kName);
    ASSERT_TRUE(waitForMenu());
    keep("preset-menu");
    XDoTool::key("Escape");
    ASSERT_TRUE(waitForNoMenu());
    choose(preset(1));
    EXPECT_TRUE(rmsIs(200)) << "the menu brings the saved value back";
    choose(kDefault);
    EXPECT_TRUE(rmsIs(500) && nameIs("Default"));

    saveAs({}); // and "Cancel"
    step(20);
    EXPECT_TRUE(message().isEmpty());
    EXPECT_EQ(files(), saved);
}

TEST_F(PresetSession, RenameByTyping) {
    makeTwo();
    FakeDesktop::Files expected = files();
    const auto rename = [this](const char* name, const char* end) {
        const Picture before = settled(kNameField);
        choose(kRename);
        ASSERT_TRUE(changes(kNameField, before, 20));
        XDoTool::type(name);
        step(5);
        keep("preset-renaming");
        XDoTool::key(end);
    };
    rename("Drei", "Escape");
    step(20);
    EXPECT_EQ(files(), expected);
    rename("Drei", "Return");
    ASSERT_TRUE(nameIs("Drei"));
    expected["Drei.fxPreset"] = expected["Zwei.fxPreset"];
    expected.erase("Zwei.fxPreset");
    EXPECT_EQ(files(), expected);

    // Names that cannot be.
    XDoTool::click(kPrevious);
    ASSERT_TRUE(rmsIs(200) || rmsIs(100));
    ASSERT_TRUE(nameIs("Höhe 1"));
    struct Refusal {
        const char* name;
        const char* station;
    };
    for (const Refusal& refused :
         {Refusal{"Drei", "exists"}, {"a/b", "separator"}, {".x", "dot"}}) {
        rename(refused.name, "Return");
        ASSERT_TRUE(waitForMessage()) << refused.name;
        keep(std::string("preset-rename-") + refused.station);
        const bool exists = messageSays(
            "Error!", {"A preset \"Drei\" exists already.", "The preset keeps its name."});
        EXPECT_EQ(exists, refused.station == std::string("exists"));
        XDoTool::click(messageButton(0));
        ASSERT_TRUE(waitForNoMessage());
        EXPECT_TRUE(nameIs("Höhe 1"));
        EXPECT_EQ(files(), expected) << refused.name;
    }
}

TEST_F(PresetSession, OverwritingAndDeletingAskFirst) {
    makeTwo();
    FakeDesktop::Files expected = files();
    typeRms("250");
    choose(kSave);
    ASSERT_TRUE(waitForMessage());
    keep("preset-overwrite");
    EXPECT_TRUE(messageSays("Preset Exists", {"File \"Zwei\" alread Exists, overwrite ?",
                                              "(" + (presets() / "Zwei.fxPreset").string() + ")"}));
    XDoTool::click(messageButton(0)); // "No"
    ASSERT_TRUE(waitForNoMessage());
    EXPECT_EQ(files(), expected);
    choose(kSave);
    ASSERT_TRUE(waitForMessage());
    XDoTool::key("Escape"); // "No", too
    ASSERT_TRUE(waitForNoMessage());
    EXPECT_EQ(files(), expected);
    choose(kSave);
    ASSERT_TRUE(waitForMessage());
    XDoTool::click(messageButton(1)); // "Yes"
    ASSERT_TRUE(until([&] { return files() != expected; }));
    const FakeDesktop::Files written = files();
    EXPECT_EQ(written.size(), 2u);
    EXPECT_EQ(written.at("Höhe 1.fxPreset"), expected.at("Höhe 1.fxPreset"));
    typeRms("400");
    choose(preset(1));
    EXPECT_TRUE(rmsIs(250)) << "what was written is what was set";

    choose(kDelete);
    ASSERT_TRUE(waitForMessage());
    keep("preset-delete");
    XDoTool::key("Escape");
    ASSERT_TRUE(waitForNoMessage());
    EXPECT_EQ(files(), written);
    choose(preset(1)); // none is chosen after the question, whatever the answer
    ASSERT_TRUE(nameIs("Zwei"));
    choose(kDelete);
    ASSERT_TRUE(waitForMessage());
    XDoTool::key("Return"); // "Yes"
    ASSERT_TRUE(until([&] { return files().size() == 1; }));
    EXPECT_EQ(files().at("Höhe 1.fxPreset"), expected.at("Höhe 1.fxPreset"));
    EXPECT_EQ(plain(kGlobalRMSLength), 250.0F) << "what is heard stays";
}

TEST_F(PresetSession, PresetsInAFolderHaveASubMenu) {
    makeTwo();
    std::filesystem::create_directory(presets() / "Drums");
    std::filesystem::rename(presets() / "Höhe 1.fxPreset", presets() / "Drums/Snare.fxPreset");
    const FakeDesktop::Files saved = files();
    XDoTool::click(kName);
    ASSERT_TRUE(waitForMenu());
    const CRect menu = menus().front();
    const Row folder = preset(0);
    XDoTool::moveTo(rowOf(menu, folder.row, folder.separators));
    ASSERT_TRUE(until([&] { return menus().size() == 2; }));
    keep("preset-folder");
    XDoTool::click(rowOf(menus().back(), 0));
    EXPECT_TRUE(rmsIs(100) && nameIs("Snare"));
    EXPECT_EQ(files(), saved);
}

// No user, not even root, can write there; a folder whose permissions forbid it is the same to us.
TEST_F(PresetSession, AFolderThatTakesNoFilesIsToldOf) {
    makeTwo();
    const FakeDesktop::Files saved = files();
    saveAs("/proc/Third.fxPreset");
    ASSERT_TRUE(waitForMessage());
    keep("preset-read-only");
    EXPECT_TRUE(messageSays("Error!",
                            {"Some error occurred while saving Preset!", "/proc/Third.fxPreset"}));
    XDoTool::key("Return");
    ASSERT_TRUE(waitForNoMessage());
    EXPECT_EQ(files(), saved);
    EXPECT_EQ(plain(kGlobalRMSLength), 200.0F);
}

TEST_F(PresetSession, TheSystemPageChoosesTheFolder) {
    makeTwo();
    const std::filesystem::path other = desktop_.folder / "Andere Töne";
    std::filesystem::create_directory(other);
    std::filesystem::copy(presets() / "Zwei.fxPreset", other / "Neu.fxPreset");
    showPage(3);
    const CRect path = CRect::ofSize(345.0, 228.0, 310.0, 22.0);
    const Picture before = settled(path);
    desktop_.answer({}); // "Cancel"
    XDoTool::click({717, 238});
    ASSERT_TRUE(until([&] { return desktop_.asked().find("--directory") != std::string::npos; }));
    step(20);
    EXPECT_EQ(look(path), before);
    desktop_.answer(other);
    XDoTool::click({717, 244});
    EXPECT_TRUE(changes(path, before, 30));
    EXPECT_EQ(Core::getContentLocation(), other.string() + "/");
    keep("system-folder");
    XDoTool::click({815, 238}); // "Open..."
    EXPECT_TRUE(until([&] { return desktop_.opened() == other.string() + "/"; }));
    showPage(0);
    XDoTool::click(kNext);
    EXPECT_TRUE(nameIs("Neu")) << "the browser is there already";
}

} // namespace
} // namespace Orvel
