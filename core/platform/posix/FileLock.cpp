#include "FileLock.h"

#include "FileDescriptor.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>
#include <chrono>
#include <thread>

namespace Core {

namespace {
// The holder only replaces a small file. Whoever takes this long hangs, and we must not with it.
constexpr std::chrono::seconds kPatience{2};

bool lock(const FileDescriptor& file) {
    const auto deadline = std::chrono::steady_clock::now() + kPatience;
    while (::flock(file.get(), LOCK_EX | LOCK_NB) != 0) {
        if (errno == EINTR) continue;
        if (errno != EWOULDBLOCK) return true; // no locks here
        if (std::chrono::steady_clock::now() >= deadline) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}
} // namespace

struct FileLock::Handle {
    FileDescriptor file;
};

FileLock::FileLock(const std::filesystem::path& lockFile) {
    FileDescriptor file(
        ::open(lockFile.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0600));
    if (file.isOpen() && lock(file)) handle_ = std::make_unique<Handle>(Handle{std::move(file)});
}

FileLock::~FileLock() = default;

} // namespace Core
