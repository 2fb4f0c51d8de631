// The list of presets and what the interface does to files, without a window.
#include "NaturalOrder.h"
#include "PresetFixture.h"
#include "core/Paths.h"

#include <gmock/gmock.h>

namespace Sorel {
namespace {

using ::testing::ElementsAre;

class PresetListTest : public FileTest {
  protected:
    PresetListTest() { presets.SetPresetFolder((folder / "presets").c_str()); }
    void add(const std::string& file) { write(folder / "presets" / file, presetFile("in", file)); }
    std::vector<std::string> names() {
        std::vector<std::string> all;
        for (int i = 0; i < presets.GetPresetCount(); ++i) {
            const PresetEntry& entry = *presets.GetPresetEntry(i);
            all.push_back((entry.folder ? *entry.folder + ":" : "") + entry.name);
        }
        return all;
    }
    std::string current() {
        const char* name = presets.GetPresetName(presets.GetCurrentPresetIndex());
        return name != nullptr ? name : "none";
    }
    std::string path(const std::string& file) { return (folder / "presets" / file).string(); }

    TextPlugin plugin;
    CSingleFXPresetInterface presets{&plugin, &plugin};
};

TEST(NaturalOrder, CountsAndIgnoresCase) {
    const std::vector<std::string> order = {
        "1", "02", "2",     "10",    "a",      "A2",     "a10",
        "b", "Z",  "Äther", "äugen", "Ödland", "яблоко", "\xF0\x9F\x8E\x9A"};
    for (std::size_t i = 0; i < order.size(); ++i)
        for (std::size_t j = 0; j < order.size(); ++j)
            EXPECT_EQ(naturallyBefore(order[i], order[j]), i < j) << order[i] << " " << order[j];
    EXPECT_NE(naturallyBefore("a", "A"), naturallyBefore("A", "a"));
    naturallyBefore("\xE2\x82", "\xFF\x80"); // broken text is read to its end and no further
}

TEST_F(PresetListTest, WhatIsAPresetAndInWhichOrder) {
    for (const char* file :
         {"b10.fxPreset", "B2.fxPreset", "Default.fxPreset", "a.fxPreset.fxPreset", "notes.txt",
          "x.FXPRESET", ".hidden.fxPreset", "Mix/Default.fxPreset", "Mix/deep/no.fxPreset",
          "drums/k.fxPreset", ".git/no.fxPreset", "é.fxPreset", "a.fxPresets"})
        add(file);
    std::filesystem::create_symlink("nowhere", path("dead.fxPreset"));
    std::filesystem::create_directories(path("folder.fxPreset"));
    presets.RescanPresets();
    EXPECT_THAT(names(), ElementsAre("B2", "b10", "drums:k", "Mix:Default", "é"));
    EXPECT_EQ(presets.GetPresetEntry(2)->path, path("drums/k.fxPreset"));
    EXPECT_EQ(presets.GetPresetEntry(5), nullptr);
    EXPECT_EQ(presets.GetPresetName(-1), nullptr);
    EXPECT_EQ(presets.GetBrowserFeatures(), 26);
}

TEST_F(PresetListTest, ARescanKeepsTheSelectionByPath) {
    add("m.fxPreset");
    presets.RescanPresets();
    EXPECT_TRUE(presets.SelectPreset(0));
    EXPECT_EQ(plugin.state, "m.fxPreset");
    EXPECT_EQ(plugin.name, "in"); // the name inside the file
    add("a.fxPreset");
    presets.RescanPresets();
    EXPECT_EQ(presets.GetCurrentPresetIndex(), 1);
    presets.SelectPresetByName("none.fxPreset", PresetPlace::kInFolder);
    EXPECT_EQ(current(), "m");
    presets.SelectPresetByName("a.fxPreset", PresetPlace::kInFolder);
    EXPECT_EQ(current(), "a");
    EXPECT_EQ(plugin.loads, 1);
    std::filesystem::remove(path("a.fxPreset"));
    EXPECT_FALSE(presets.SelectPreset(0));
    presets.RescanPresets();
    EXPECT_EQ(current(), "none");
}

TEST_F(PresetListTest, RenamingNeverReplaces) {
    EXPECT_EQ(presets.RenameCurrentPreset("x"), RenameResult::kNoPreset);
    add("a.fxPreset");
    add("Mix/b.fxPreset");
    add("Mix/c.fxPreset");
    presets.RescanPresets();
    presets.SelectPresetByName("Mix/b.fxPreset", PresetPlace::kInFolder);
    EXPECT_EQ(presets.RenameCurrentPreset("c"), RenameResult::kExists);
    EXPECT_EQ(read(path("Mix/c.fxPreset")), presetFile("in", "Mix/c.fxPreset"));
    EXPECT_EQ(presets.RenameCurrentPreset("../x"), RenameResult::kNameRefused);
    EXPECT_EQ(presets.RenameCurrentPreset("b"), RenameResult::kDone);
    EXPECT_EQ(presets.RenameCurrentPreset(std::string(250, 'x').c_str()), RenameResult::kFailed);
    EXPECT_EQ(current(), "b");
    EXPECT_EQ(presets.RenameCurrentPreset("Zoë.fxPreset"), RenameResult::kDone);
    EXPECT_EQ(current(), "Zoë");
    EXPECT_EQ(read(path("Mix/Zoë.fxPreset")), presetFile("in", "Mix/b.fxPreset"));
    EXPECT_THAT(names(), ElementsAre("a", "Mix:c", "Mix:Zoë"));
    // Without a window no question can be asked, and the answer is no.
    presets.DeletePreset(0, nullptr, {});
    EXPECT_TRUE(std::filesystem::exists(path("a.fxPreset")));
    EXPECT_EQ(presets.GetCurrentPresetIndex(), -1);
}

TEST_F(PresetListTest, SavingAppendsTheExtensionAndMakesTheFolder) {
    EXPECT_TRUE(presets.SavePreset("x.y", PresetPlace::kInFolder));
    EXPECT_TRUE(presets.SavePreset("z.fxPreset", PresetPlace::kInFolder));
    presets.RescanPresets();
    EXPECT_THAT(names(), ElementsAre("x.y", "z"));
    EXPECT_STREQ(presets.GetLoadedPresetName(), "z");
    EXPECT_STREQ(presets.GetCurrentPresetName(), "NewPreset"); // no browser
}

TEST_F(PresetListTest, DefaultsAreThereBeforeAnybodyHears) {
    struct Listener : Vardo::ParameterChangeListener {
        explicit Listener(TextPlugin& from)
            : plugin(from) {}
        void parameterChanged(Vardo::IPluginParameter*) override {
            heard.push_back(plugin.first.getValue() + plugin.second.getValue());
        }
        TextPlugin& plugin;
        std::vector<float> heard;
    } listener(plugin);
    for (auto* parameter : {&plugin.first, &plugin.second}) {
        parameter->setDefault(25.0F);
        parameter->setValue(80.0F);
        parameter->addListener(&listener, false);
    }
    presets.ResetToDefaultSettings();
    EXPECT_THAT(listener.heard, ElementsAre(50.0F, 50.0F));
}

TEST_F(PresetListTest, TheContentFolderIsMadeByUseAlone) {
    CSingleFXPresetInterface fresh(&plugin);
    EXPECT_EQ(entriesIn(folder / "home"), 0);
    EXPECT_FALSE(std::filesystem::exists(folder / "config"));
    EXPECT_EQ(std::string(fresh.GetPresetFolder()), Core::getContentLocation());
    EXPECT_FALSE(std::filesystem::exists(fresh.GetPresetFolder()));
    fresh.RescanPresets();
    EXPECT_TRUE(std::filesystem::is_directory(fresh.GetPresetFolder()));
    EXPECT_TRUE(std::filesystem::exists(folder / "config"));

    add("there.fxPreset");
    Core::setContentLocation(path("").c_str()); // as another instance does
    EXPECT_EQ(fresh.GetPresetFolder(), path(""));
    fresh.RescanPresets();
    EXPECT_TRUE(fresh.SelectPreset(0));
    add("another.fxPreset");
    fresh.Notify(nullptr, "another message");
    EXPECT_EQ(fresh.GetPresetCount(), 1);
    fresh.Notify(nullptr, kNotifyPresetFolderChanged);
    EXPECT_EQ(fresh.GetPresetCount(), 2);
    EXPECT_EQ(fresh.GetCurrentPresetIndex(), 1);
}

} // namespace
} // namespace Sorel
