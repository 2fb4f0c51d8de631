// Runs the tests of one program with settings and folders of its own, so that no test reads or
// writes what belongs to the user.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);

    std::string home = (std::filesystem::temp_directory_path() / "orvel-test-XXXXXX").string();
    if (mkdtemp(home.data()) == nullptr) return 3;
    setenv("HOME", home.c_str(), 1);
    setenv("XDG_CONFIG_HOME", (home + "/config").c_str(), 1);
    setenv("XDG_CONFIG_DIRS", (home + "/system-config").c_str(), 1);
    setenv("XDG_DATA_HOME", (home + "/data").c_str(), 1);

    const int result = RUN_ALL_TESTS();
    std::filesystem::remove_all(home);
    return result;
}
