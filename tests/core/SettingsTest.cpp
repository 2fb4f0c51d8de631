// The settings store: fallback, copying, defaults, exact texts, and several writers at once.
#include "core/Settings.h"

#include "FileFixture.h"

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <thread>
#include <vector>

namespace fs = std::filesystem;
using Core::kMaxSettingLength;
using Core::writeSetting;

namespace {
constexpr const char* kPath = "Software\\Maker\\Product\\";

class Settings : public FileTest {
  protected:
    struct Result {
        bool found;
        std::string value;
        bool operator==(const Result&) const = default;
    };
    static Result
    readSetting(const char* name, const char* defaultValue = nullptr, const char* path = kPath) {
        std::array<char, Core::kSettingBufferSize> value{"not touched"};
        const bool found = Core::readSetting(path, name, value.data(), defaultValue);
        return {found, value.data()};
    }
    fs::path userFile() const { return folder / "config/Maker/Product.conf"; }
    fs::path machineFile(const char* root = "etc") const {
        return folder / root / "Maker/Product.conf";
    }
};

} // namespace

TEST_F(Settings, PathIsBuiltAndChecked) {
    std::array<char, 64> buffer{};
    EXPECT_TRUE(Core::makeSettingsPath(buffer.data(), 24, "Maker", "Product"));
    EXPECT_STREQ(buffer.data(), kPath);
    EXPECT_FALSE(Core::makeSettingsPath(buffer.data(), 23, "Maker", "Product"));
    // A path may not lead out of the configuration folder.
    for (const char* path : {"Software\\..\\..\\x\\", "Software\\"})
        EXPECT_FALSE(writeSetting(path, "a", "1"));
}

TEST_F(Settings, WritesReadsReplaces) {
    EXPECT_EQ(readSetting("THREADING"), (Result{false, ""}));
    EXPECT_FALSE(fs::exists(userFile())) << "a null default writes nothing";
    EXPECT_TRUE(writeSetting(kPath, "THREADING", "TRUE"));
    EXPECT_TRUE(writeSetting(kPath, "Other", "x"));
    EXPECT_TRUE(writeSetting(kPath, "THREADING", "FALSE"));
    EXPECT_EQ(readSetting("THREADING", "TRUE"), (Result{true, "FALSE"}));
    EXPECT_EQ(readSetting("Other"), (Result{true, "x"}));
    EXPECT_EQ(read(userFile()), "THREADING = FALSE\nOther = x\n");

    EXPECT_FALSE(writeSetting(kPath, "Other", "")) << "an empty value writes nothing";
    for (const char* name : {"", "a=b", "a\nb", "#a"})
        EXPECT_FALSE(writeSetting(kPath, name, "x")) << name;
    EXPECT_EQ(readSetting("New", ""), (Result{false, ""}));
    EXPECT_EQ(readSetting("New", "default"), (Result{false, "default"})) << "and is written";
    EXPECT_EQ(readSetting("New", "another"), (Result{true, "default"}));
    EXPECT_EQ(read(userFile()), "THREADING = FALSE\nOther = x\nNew = default\n");
}

TEST_F(Settings, TextsComeBackExactly) {
    for (const std::string value :
         {"with = sign", "two\nlines\r\n", "C:\\new\\table \\", " blanks at the ends ", "\ttab\t",
          " ", "\\n", "# no comment", "J\xC3\xB6rg \xE2\x99\xAA", "\"quoted\""}) {
        ASSERT_TRUE(writeSetting(kPath, "Text", value.c_str()));
        EXPECT_EQ(readSetting("Text"), (Result{true, value}));
    }
    const std::string longest(kMaxSettingLength, 'x');
    EXPECT_TRUE(writeSetting(kPath, "Text", longest.c_str()));
    EXPECT_FALSE(writeSetting(kPath, "Text", (longest + "y").c_str()));
    EXPECT_EQ(readSetting("Text"), (Result{true, longest}));
}

TEST_F(Settings, MachineValueIsCopiedAndThenTheUsersCounts) {
    write(machineFile(), "THREADING=FALSE\nEmpty =\n");
    EXPECT_EQ(readSetting("THREADING", "TRUE"), (Result{true, "FALSE"}));
    EXPECT_EQ(read(userFile()), "THREADING = FALSE\n");
    write(machineFile(), "THREADING = TRUE\n");
    EXPECT_EQ(readSetting("THREADING"), (Result{true, "FALSE"}));

    write(machineFile(), "Empty =\n");
    EXPECT_EQ(readSetting("Empty", "default"), (Result{true, ""}));
    EXPECT_EQ(read(userFile()), "THREADING = FALSE\n") << "an empty value is not copied";
}

TEST_F(Settings, MachineFoldersAreTakenInTheirOrder) {
    const std::string relative = fs::relative(folder / "relative").string();
    write(machineFile("relative"), "A = relative\nB = relative\n");
    const std::string list = relative + ":" + (folder / "none").string() +
                             "::" + (folder / "first").string() + ":" +
                             (folder / "second").string();
    setVariable("XDG_CONFIG_DIRS", list.c_str());
    write(machineFile("second"), "A = second\nB = second\n");
    write(machineFile("first"), "A = first\n");
    EXPECT_EQ(readSetting("A"), (Result{true, "first"}));
    EXPECT_EQ(readSetting("B"), (Result{true, "second"}));
}

TEST_F(Settings, WhatPeopleWroteStays) {
    const std::string before =
        "# my notes\n\nTHREADING=TRUE \r\nnot a setting\n[section]\nFuture = 1";
    write(userFile(), before);
    EXPECT_EQ(readSetting("THREADING"), (Result{true, "TRUE"}));
    EXPECT_EQ(readSetting("Future"), (Result{true, "1"}));
    EXPECT_TRUE(writeSetting(kPath, "THREADING", "FALSE"));
    EXPECT_TRUE(writeSetting(kPath, "New", "2"));
    EXPECT_EQ(read(userFile()),
              "# my notes\n\nTHREADING = FALSE\nnot a setting\n[section]\nFuture = 1\nNew = 2\n");
}

TEST_F(Settings, DamagedFilesDoNoHarm) {
    const std::string tooLong(kMaxSettingLength + 1, 'x');
    write(userFile(), "Long = " + tooLong + "\n" + std::string("Zero = a\0b\n=\n = \n\\", 18));
    EXPECT_EQ(readSetting("Long"), (Result{false, ""}));
    EXPECT_EQ(readSetting("Zero", "default"), (Result{false, "default"}));
    EXPECT_EQ(readSetting("Zero"), (Result{true, "default"}));

    // Far too large to be ours: not read, and never overwritten.
    write(userFile(), "A = 1\n" + std::string(2 << 20, '#'));
    EXPECT_EQ(readSetting("A", "default"), (Result{false, "default"}));
    EXPECT_FALSE(writeSetting(kPath, "A", "2"));
    EXPECT_EQ(fs::file_size(userFile()), std::uintmax_t{6 + (2 << 20)});

    // Without the lock nothing is written.
    fs::remove(userFile());
    fs::remove(folder / "config/Maker/.Product.conf.lock");
    fs::create_directory(folder / "config/Maker/.Product.conf.lock");
    EXPECT_FALSE(writeSetting(kPath, "A", "2"));
    EXPECT_FALSE(fs::exists(userFile()));
    fs::remove(folder / "config/Maker/.Product.conf.lock");

    // A pipe in its place does not make us wait.
    ASSERT_EQ(mkfifo(userFile().c_str(), 0600), 0);
    EXPECT_EQ(readSetting("A", "default"), (Result{false, "default"}));
    EXPECT_FALSE(writeSetting(kPath, "A", "2"));
}

TEST_F(Settings, FoldersFallBack) {
    setVariable("XDG_CONFIG_HOME", nullptr);
    EXPECT_TRUE(writeSetting(kPath, "A", "1"));
    EXPECT_EQ(read(folder / "home/.config/Maker/Product.conf"), "A = 1\n");
    setVariable("XDG_CONFIG_HOME", "not/absolute");
    EXPECT_EQ(readSetting("A"), (Result{true, "1"}));
    struct stat made {};
    ASSERT_EQ(stat((folder / "home/.config").c_str(), &made), 0);
    EXPECT_EQ(made.st_mode & 0777, 0700U);

    write(folder / "file", ""); // no folder can be made there
    setVariable("XDG_CONFIG_HOME", (folder / "file").c_str());
    EXPECT_EQ(readSetting("THREADING", "TRUE"), (Result{false, "TRUE"}));
    EXPECT_FALSE(writeSetting(kPath, "THREADING", "TRUE"));
    write(machineFile(), "THREADING = FALSE\n");
    EXPECT_EQ(readSetting("THREADING", "TRUE"), (Result{true, "FALSE"}));
}

TEST_F(Settings, ThreadsAndProcessesDoNotLoseEachOthersValues) {
    constexpr int kWriters = 3; // processes, and as many threads in this one
    constexpr int kWrites = 10;
    const auto key = [](int writer, int i) {
        return "Key" + std::to_string(writer) + "_" + std::to_string(i);
    };
    const auto writeAll = [&](int writer) {
        bool good = true;
        for (int i = 0; i < kWrites; ++i)
            good = writeSetting(kPath, key(writer, i).c_str(), "x") && good;
        return good;
    };
    std::vector<pid_t> children;
    for (int writer = 0; writer < kWriters; ++writer) {
        children.push_back(fork());
        ASSERT_GE(children.back(), 0);
        if (children.back() == 0) _exit(writeAll(writer) ? 0 : 1);
    }
    std::vector<std::thread> threads;
    for (int writer = kWriters; writer < 2 * kWriters; ++writer)
        threads.emplace_back([&, writer] { EXPECT_TRUE(writeAll(writer)); });
    for (std::thread& thread : threads)
        thread.join();
    for (const pid_t child : children) {
        int status = -1;
        waitpid(child, &status, 0);
        EXPECT_EQ(status, 0);
    }
    for (int writer = 0; writer < 2 * kWriters; ++writer)
        for (int i = 0; i < kWrites; ++i)
            EXPECT_TRUE(readSetting(key(writer, i).c_str()).found) << key(writer, i);
    EXPECT_EQ(entriesIn(userFile().parent_path()), 2) << "the file and its lock, no litter";
}
