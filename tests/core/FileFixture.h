// A folder of its own per test, and environment variables that come back afterwards.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>
#include <string>

class FileTest : public testing::Test {
  protected:
    FileTest() {
        std::string name = (std::filesystem::temp_directory_path() / "orvel-files-XXXXXX").string();
        folder = mkdtemp(name.data());
        setVariable("HOME", (folder / "home").c_str());
        setVariable("XDG_CONFIG_HOME", (folder / "config").c_str());
        setVariable("XDG_DATA_HOME", (folder / "data").c_str());
        setVariable("XDG_CONFIG_DIRS", (folder / "etc").c_str());
        std::filesystem::create_directories(folder / "home");
    }
    ~FileTest() override {
        for (const auto& [name, value] : oldVariables_)
            if (value)
                setenv(name.c_str(), value->c_str(), 1);
            else
                unsetenv(name.c_str());
        std::filesystem::remove_all(folder);
    }

    /// A null value takes the variable away.
    void setVariable(const char* name, const char* value) {
        const char* old = std::getenv(name);
        oldVariables_.try_emplace(name, old ? std::optional<std::string>(old) : std::nullopt);
        if (value != nullptr)
            setenv(name, value, 1);
        else
            unsetenv(name);
    }

    static std::string read(const std::filesystem::path& file) {
        std::ifstream in(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    static void write(const std::filesystem::path& file, const std::string& text) {
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << text;
    }
    static int entriesIn(const std::filesystem::path& where) {
        return static_cast<int>(std::distance(std::filesystem::directory_iterator(where), {}));
    }

    std::filesystem::path folder;

  private:
    std::map<std::string, std::optional<std::string>> oldVariables_;
};
