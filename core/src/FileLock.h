// What the platform folder provides so that two processes do not change one file at once.
#pragma once

#include <filesystem>
#include <memory>

namespace Core {

/// Holds a lock on a file made for nothing else, until the end of this object's life. The system
/// takes it back from a process that dies.
class FileLock {
  public:
    /// Waits for another holder, but not for ever: see isHeld.
    explicit FileLock(const std::filesystem::path& lockFile);
    ~FileLock();
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

    /// False when the file cannot be made or somebody holds it for seconds. True without a lock
    /// on file systems that have none.
    bool isHeld() const noexcept { return handle_ != nullptr; }

  private:
    struct Handle;
    std::unique_ptr<Handle> handle_;
};

} // namespace Core
