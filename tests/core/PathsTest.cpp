// The content location, the user's folders, opening with the desktop, and replacing files.
#include "core/Paths.h"
#include "core/AtomicFile.h"
#include "core/Settings.h"

#include "FileFixture.h"

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <thread>

namespace fs = std::filesystem;

namespace {
class Paths : public FileTest {
  protected:
    static std::string special(int kind) {
        std::array<char, Core::kPathBufferSize> path{"not touched"};
        const bool found = Core::getSpecialFolder(kind, path.data());
        EXPECT_EQ(found, path[0] != 0);
        return path.data();
    }
    void setUserDirs(const std::string& text) const {
        write(folder / "config/user-dirs.dirs", text);
    }
    std::string home(const std::string& below = "") const {
        return (folder / "home").string() + "/" + below;
    }
};
using AtomicFile = FileTest;
} // namespace

TEST_F(Paths, FoldersComeFromTheDesktop) {
    EXPECT_EQ(special(1), home()) << "no entry: the home folder";
    setUserDirs(
        "# comment\nXDG_DESKTOP_DIR=\"$HOME/Desk\"\n"
        "XDG_DOCUMENTS_DIR=\"/not/this\"\n  XDG_DOCUMENTS_DIR = \"$HOME/My \\\"Doc\\\"s\" #x\n");
    EXPECT_EQ(special(0), home("Desk/"));
    for (const int kind : {1, 16, 46})
        EXPECT_EQ(special(kind), home("My \"Doc\"s/"));
    EXPECT_EQ(special(3), (folder / "data").string() + "/");
    EXPECT_EQ(special(-1), "");
}

TEST_F(Paths, OddEntriesAreNotFollowed) {
    for (const char* line :
         {"XDG_DOCUMENTS_DIR=relative", "XDG_DOCUMENTS_DIR=\"relative\"",
          "XDG_DOCUMENTS_DIR=\"$HOMEmade\"", "XDG_DOCUMENTS_DIR=\"$(touch gone)/x\"",
          "XDG_DOCUMENTS_DIR=\"/no end", "XDG_DOCUMENTS_DIR=\"/no end\\", "XDG_DOCUMENTS_DIR",
          "XDG_DOCUMENTS_DIRS=\"/other\"", "MY_XDG_DOCUMENTS_DIR=\"/other\"",
          "XDG_DOCUMENTS_DIR=\"$HOME/\"", "XDG_DOCUMENTS_DIR=\"$HOME\""}) {
        setUserDirs(line);
        EXPECT_EQ(special(1), home()) << line;
    }
    setUserDirs("XDG_DOCUMENTS_DIR=\"/" + std::string(2000, 'x') + "\"");
    EXPECT_EQ(special(1), "") << "too long for the caller's buffer";
    setUserDirs("XDG_DOCUMENTS_DIR=\"/data/docs/\"");
    EXPECT_EQ(special(1), "/data/docs/");
}

TEST_F(Paths, ContentLocationIsMadeOnceAndKept) {
    setUserDirs("XDG_DOCUMENTS_DIR=\"$HOME/Documents\"");
    const std::string location = home("Documents/Quillmere/Orvel Scope/");
    EXPECT_EQ(Core::getContentLocation(), location);
    EXPECT_FALSE(fs::exists(location)) << "asking leaves no traces";
    EXPECT_FALSE(fs::exists(folder / "config/QUILLMERE"));
    EXPECT_TRUE(Core::makeContentLocation());
    EXPECT_TRUE(fs::is_directory(location));
    setUserDirs("XDG_DOCUMENTS_DIR=\"$HOME/Elsewhere\"");
    EXPECT_EQ(Core::getContentLocation(), location) << "remembered";

    EXPECT_TRUE(Core::setContentLocation("/with/slash/"));
    EXPECT_STREQ(Core::getContentLocation(), "/with/slash/");
    EXPECT_FALSE(Core::setContentLocation(nullptr));
    EXPECT_FALSE(Core::setContentLocation(std::string(1025, '/').c_str()));
    EXPECT_STREQ(Core::getContentLocation(), "/with/slash/");

    std::string longest(1024, 'x');
    longest.front() = '/';
    write(folder / "config/QUILLMERE/Orvel Scope.conf",
          std::string("ContentLocation = ") + longest + "\n");
    EXPECT_EQ(Core::getContentLocation(), longest + '/');
    write(folder / "config/QUILLMERE/Orvel Scope.conf", "ContentLocation =\n");
    EXPECT_EQ(Core::getContentLocation(), home("Elsewhere/Quillmere/Orvel Scope/"));

    EXPECT_TRUE(Core::setContentLocation((folder / "file").c_str()));
    write(folder / "file", ""); // nothing can be kept there
    EXPECT_FALSE(Core::makeContentLocation());
    setVariable("XDG_CONFIG_HOME", (folder / "file").c_str());
    EXPECT_EQ(Core::getContentLocation(), home("Quillmere/Orvel Scope/"));
}

TEST_F(Paths, OpensDetachedWithoutAShell) {
    // An opener that writes down what it was given.
    const fs::path programs = folder / "bin";
    const fs::path note = folder / "note";
    write(programs / "xdg-open", "#!/bin/sh\nprintf '%s|%s' \"$#\" \"$1\" >'" + note.string() +
                                     ".new'\nmv '" + note.string() + ".new' '" + note.string() +
                                     "'\n");
    fs::permissions(programs / "xdg-open", fs::perms::owner_all);
    setVariable("PATH", (programs.string() + ":" + std::getenv("PATH")).c_str());

    for (const std::string path : {"/a folder; touch \"x\" $(y)", "-option"}) {
        fs::remove(note);
        Core::openWithShell(path.c_str());
        for (int i = 0; i < 2000 && !fs::exists(note); ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        EXPECT_EQ(read(note), "1|" + (path[0] == '-' ? "./" + path : path));
    }
    Core::openWithShell(nullptr);

    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1) << "a child was left behind";
    EXPECT_EQ(errno, ECHILD);
}

TEST_F(AtomicFile, KeepsPermissionsAndLinks) {
    const fs::path file = folder / "below/file";
    write(file, "old");
    fs::permissions(file, fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
    fs::create_symlink("below/file", folder / "link");
    EXPECT_TRUE(Core::writeFileAtomically(folder / "link", "new"));
    EXPECT_TRUE(fs::is_symlink(folder / "link"));
    EXPECT_EQ(read(file), "new");
    EXPECT_EQ(fs::status(file).permissions(),
              fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
    EXPECT_EQ(entriesIn(folder / "below"), 1);
}

TEST_F(AtomicFile, FailsWithoutLitter) {
    const int before = entriesIn(folder);
    EXPECT_FALSE(Core::writeFileAtomically(folder / "home", "a folder stands there"));
    EXPECT_FALSE(Core::writeFileAtomically(folder / "none/file", "no such folder"));
    EXPECT_FALSE(Core::writeFileAtomically("", "no name"));
    EXPECT_EQ(entriesIn(folder), before);
}

TEST_F(AtomicFile, ReadersSeeOldOrNew) {
    const fs::path file = folder / "file";
    const std::string a(50000, 'a');
    const std::string b(70000, 'b');
    ASSERT_TRUE(Core::writeFileAtomically(file, a));
    std::thread writer([&] {
        for (int i = 0; i < 20; ++i)
            EXPECT_TRUE(Core::writeFileAtomically(file, i % 2 == 0 ? b : a));
    });
    for (int i = 0; i < 200; ++i) {
        const std::string seen = read(file);
        EXPECT_TRUE(seen == a || seen == b) << seen.size() << " bytes";
    }
    writer.join();
}
