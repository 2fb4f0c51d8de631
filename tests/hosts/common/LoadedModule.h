// What a process can see of a plug-in binary that it loads and unloads.
#pragma once

#include "core/Settings.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <fstream>
#include <set>
#include <string>
#include <thread>

/// Names that a binary exports.
inline std::set<std::string> exportsOf(const std::string& path) {
    std::set<std::string> names;
    FILE* pipe = popen(("nm -D --defined-only '" + path + "'").c_str(), "r");
    char name[256];
    while (pipe != nullptr && std::fscanf(pipe, "%*s %*s %255s", name) == 1)
        names.insert(name);
    if (pipe != nullptr) pclose(pipe);
    return names;
}

inline bool isMapped(const std::string& file) {
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);)
        if (line.find(file) != std::string::npos) return true;
    return false;
}

inline int threadCount() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.rfind("Threads:", 0) == 0) return std::stoi(line.substr(8));
    return -1;
}

/// True when the process comes down to `count` threads; one that was joined leaves the system's
/// list a moment later.
inline bool comesDownTo(int count) {
    for (int attempt = 0; attempt < 2000 && threadCount() > count; ++attempt)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    return threadCount() == count;
}

/// Tests with the analysis on the audio thread, and on one of its own, as the user chose it before.
class EitherThreading : public testing::TestWithParam<bool> {
  protected:
    void SetUp() override {
        ASSERT_TRUE(
            Core::writeSetting(Core::settingsPath(), "THREADING", GetParam() ? "TRUE" : "FALSE"));
    }
};
