// Presets and their folder in the whole window.
#include "Instrument.h"
#include "core/Paths.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace Orvel {
namespace {

namespace fs = std::filesystem;

class PresetWindowTest : public ::testing::Test {
  protected:
    PresetWindowTest() {
        fs::remove_all(presets_); // other tests open menus, too
        instrument_.open();
        instrument_.idle(2);
    }
    ~PresetWindowTest() override {
        instrument_.editor().close();
        Sorel::setPlatform(nullptr);
        fs::remove_all(presets_);
    }
    bool choose(const std::string& item) {
        instrument_.window().click({100.0, 23.0});
        instrument_.idle(2);
        const bool chosen = instrument_.window().chooseMenuItem(item);
        if (!chosen) instrument_.window().key(Sorel::Key::kEscape);
        instrument_.idle(2);
        return chosen;
    }

    const fs::path presets_ = Core::getContentLocation();
    Sorel::COffscreenPlatform desktop_;
    Instrument instrument_{desktop_};
};

TEST_F(PresetWindowTest, OpeningLeavesNoTracesAndTheFolderIsMadeWhenItIsOpened) {
    instrument_.editor().setActivePage(3);
    instrument_.idle(2);
    EXPECT_FALSE(fs::exists(presets_));
    EXPECT_FALSE(choose("Restore Factory Presets")) << "there are none";
    EXPECT_TRUE(fs::exists(presets_));
}

TEST_F(PresetWindowTest, ALongNameIsWholeAfterReopening) {
    fs::create_directories(presets_);
    std::string name;
    while (name.size() < 200)
        name += "\xC3\xA4";
    std::ofstream(presets_ / (name + ".fxPreset")) << "foreign";
    instrument_.window().click({290.0, 23.0}); // next
    instrument_.editor().close();
    instrument_.open();
    instrument_.idle(2);
    EXPECT_EQ(instrument_.editor().currentPresetName(), name);
    ASSERT_TRUE(choose("Save Preset"));
    instrument_.window().key(Sorel::Key::kReturn); // overwrite
    instrument_.idle(2);
    EXPECT_EQ(std::distance(fs::directory_iterator(presets_), {}), 1);
    EXPECT_GT(fs::file_size(presets_ / (name + ".fxPreset")), 200U);
}

} // namespace
} // namespace Orvel
