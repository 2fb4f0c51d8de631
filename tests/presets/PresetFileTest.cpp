// Preset files: every byte that is written, and whatever may be read.
#include "PresetFixture.h"
#include "presets/PresetName.h"

#include <sys/resource.h>

#include <csignal>

namespace Sorel {
namespace {

class PresetFileTest : public FileTest {
  protected:
    bool load(const std::string& bytes) {
        write(folder / "in.fxPreset", bytes);
        return file.Load(&plugin, (folder / "in.fxPreset").c_str());
    }
    TextPlugin plugin;
    CSinglePresetFile file;
};

TEST_F(PresetFileTest, TheLayoutIsExactAndComesBack) {
    plugin.state = std::string("all\0of it", 9);
    const auto path = folder / "x.y.fxPreset";
    ASSERT_TRUE(file.Save(&plugin, path.c_str()));
    EXPECT_EQ(read(path), presetFile("x.y", plugin.state));
    EXPECT_STREQ(file.GetPresetName(), "x.y");

    plugin.state = "something else";
    CSinglePresetFile other;
    ASSERT_TRUE(other.Load(&plugin, path.c_str()));
    EXPECT_EQ(plugin.state, std::string("all\0of it", 9));
    EXPECT_STREQ(other.GetPresetDisplayName(), "x.y");
    EXPECT_STREQ(other.GetExtension(), ".none");
}

TEST_F(PresetFileTest, ALongNameIsCutBetweenCharactersAndTheFileKeepsIt) {
    std::string name = "x"; // 1 + 2 * 63 = 127 bytes would end between two characters
    while (name.size() < 200)
        name += "ü";
    for (const std::string& longName : {name, "y" + name}) {
        const auto path = folder / (longName + ".fxPreset");
        ASSERT_TRUE(file.Save(&plugin, path.c_str()));
        const std::size_t kept = longName == name ? 127 : 126;
        EXPECT_EQ(file.GetPresetName(), longName.substr(0, kept));
        EXPECT_EQ(read(path), presetFile(longName.substr(0, kept), plugin.state));
    }
}

TEST_F(PresetFileTest, ForeignFilesLoadWithoutEffect) {
    const std::string sound = presetFile("Sound", "new");
    for (const std::string& bytes :
         {std::string(), sound.substr(0, 199), presetFile("Sound", "new", 3, "Orvel Scope 2"),
          presetFile("Sound", "new", (16U << 20) + 1), presetFile("Sound", "new", 0xFFFFFFFF)}) {
        EXPECT_TRUE(load(bytes)) << bytes.size();
        EXPECT_EQ(plugin.loads, 0) << bytes.size();
        EXPECT_STREQ(file.GetPresetName(), bytes.empty() ? "" : "Sound");
    }
    // A name without an end stays within its field.
    EXPECT_TRUE(load(std::string(300, 'n')));
    EXPECT_EQ(file.GetPresetName(), std::string(127, 'n'));
    EXPECT_EQ(plugin.state, "start");
}

TEST_F(PresetFileTest, AChunkThatIsCutShortEndsInZeros) {
    EXPECT_TRUE(load(presetFile("Cut", "abc", 6)));
    EXPECT_EQ(plugin.state, std::string("abc\0\0\0", 6));
    EXPECT_TRUE(load(presetFile("More", "abcdef", 2))); // what follows is not read
    EXPECT_EQ(plugin.state, "ab");
    EXPECT_TRUE(load(presetFile("Large", "a", 16U << 20)));
    EXPECT_EQ(plugin.state.size(), 16U << 20);
}

TEST_F(PresetFileTest, WhatCannotBeOpenedGivesFalse) {
    EXPECT_FALSE(file.Load(&plugin, (folder / "none").c_str()));
    EXPECT_FALSE(file.Load(&plugin, folder.c_str()));
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
    EXPECT_FALSE(file.Load(&plugin, (folder / "pipe").c_str())); // and does not wait
    EXPECT_FALSE(file.Load(nullptr, (folder / "none").c_str()));
    EXPECT_FALSE(file.Save(nullptr, (folder / "a").c_str()));
    plugin.state.clear();
    EXPECT_FALSE(file.Save(&plugin, (folder / "a").c_str()));
}

TEST_F(PresetFileTest, AFullDiskKeepsTheOldFile) {
    const auto path = folder / "a.fxPreset";
    ASSERT_TRUE(file.Save(&plugin, path.c_str()));
    const std::string before = read(path);
    plugin.state = std::string(5000, 'x');

    rlimit old{};
    getrlimit(RLIMIT_FSIZE, &old);
    const rlimit small{1000, old.rlim_max}; // a write beyond it comes back short, then fails
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &small);
    const bool saved = file.Save(&plugin, path.c_str());
    setrlimit(RLIMIT_FSIZE, &old);
    std::signal(SIGXFSZ, handler);

    EXPECT_FALSE(saved);
    EXPECT_EQ(read(path), before);
    EXPECT_EQ(entriesIn(folder), 2); // with "home": nothing is left behind
}

TEST_F(PresetFileTest, AProtectedFileIsKept) {
    const auto path = folder / "a.fxPreset";
    ASSERT_TRUE(file.Save(&plugin, path.c_str()));
    std::filesystem::permissions(path, std::filesystem::perms::owner_read);
    plugin.state = "changed";
    const WithoutRights user(folder);
    EXPECT_FALSE(file.Save(&plugin, path.c_str()));
    EXPECT_EQ(read(path), presetFile("a", "start"));
}

TEST_F(PresetFileTest, BlocksComeBackWhole) {
    const std::string path = folder / "block";
    file.WriteBlock(path.c_str(), "12345", 5);
    void* data = nullptr;
    std::size_t size = 0;
    file.ReadBlock(path.c_str(), &data, &size);
    EXPECT_EQ(std::string(static_cast<char*>(data), size), "12345");
    file.FreeBlock(data);
    file.ReadBlock("/nowhere", &data, &size);
    EXPECT_EQ(data, nullptr);
}

TEST(PresetNames, WhichAreRefused) {
    for (const char* name : {"Größe 日本 🎚", "x.y", "a:b?"})
        EXPECT_EQ(presetNameProblem(name, "fxPreset"), PresetNameProblem::kNone) << name;
    for (const char* name :
         {"", "  ", "..", "a/b", "a\\b", "a\nb", "a\x7F", "\xC2\x85", "a.fxPreset b"})
        EXPECT_NE(presetNameProblem(name, "fxPreset"), PresetNameProblem::kNone) << name;
}

} // namespace
} // namespace Sorel
