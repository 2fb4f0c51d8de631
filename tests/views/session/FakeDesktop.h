// A desktop of the test's own: a folder, a file dialog that answers at once, and an opener that
// writes down what it is given.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>

namespace Orvel {

/// While it lives, programs that the window starts are these.
class FakeDesktop {
  public:
    FakeDesktop() {
        std::string name =
            (std::filesystem::temp_directory_path() / "orvel-desktop-XXXXXX").string();
        folder = mkdtemp(name.data());
        std::filesystem::create_directory(folder / "bin");
        program("zenity", "printf '%s\\n' \"$@\" > '" + (folder / "asked").string() +
                              "'\nexec cat '" + (folder / "answer").string() + "'\n");
        program("xdg-open", "printf '%s' \"$1\" > '" + (folder / "opened").string() + "'\n");
        oldPath_ = std::getenv("PATH");
        setenv("PATH", ((folder / "bin").string() + ":" + oldPath_).c_str(), 1);
        setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere", 1); // no portal
    }
    ~FakeDesktop() {
        setenv("PATH", oldPath_.c_str(), 1);
        std::filesystem::remove_all(folder);
    }
    FakeDesktop(const FakeDesktop&) = delete;
    FakeDesktop& operator=(const FakeDesktop&) = delete;

    /// What the next file dialog gives; an empty path is its "Cancel".
    void answer(const std::filesystem::path& path) const {
        std::filesystem::remove(folder / "answer");
        if (!path.empty()) std::ofstream(folder / "answer") << path.string() << '\n';
    }
    /// The arguments of the last file dialog.
    std::string asked() const { return read(folder / "asked"); }
    std::string opened() const { return read(folder / "opened"); }

    /// All files below a folder with their bytes.
    using Files = std::map<std::string, std::string>;
    static Files filesIn(const std::filesystem::path& where) {
        Files files;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(where))
            if (entry.is_regular_file())
                files[std::filesystem::relative(entry.path(), where).string()] = read(entry.path());
        return files;
    }

    std::filesystem::path folder;

  private:
    static std::string read(const std::filesystem::path& file) {
        std::ifstream in(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    void program(const char* name, const std::string& script) const {
        const std::filesystem::path file = folder / "bin" / name;
        std::ofstream(file) << "#!/bin/sh\n" << script;
        std::filesystem::permissions(file, std::filesystem::perms::owner_all);
    }

    std::string oldPath_;
};

} // namespace Orvel
