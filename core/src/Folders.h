// What the platform folder provides for places: where settings and documents live.
#pragma once

#include <filesystem>
#include <vector>

namespace Core {

/// Each is an absolute path, or empty when the system names none. Nothing is created.
std::filesystem::path homeFolder();
std::filesystem::path configFolder();
std::filesystem::path dataFolder();
std::filesystem::path desktopFolder();
std::filesystem::path documentsFolder();

/// Where an administrator leaves settings for everybody, most important first.
std::vector<std::filesystem::path> machineConfigFolders();

/// Creates a folder and those above it.
/// True when it is there afterwards.
enum class Access { usual, ownerOnly };
bool createFolders(const std::filesystem::path& folder, Access access);

} // namespace Core
