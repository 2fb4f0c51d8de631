// Standard error: our own messages get through while libraries that chatter are kept quiet.
#include "StandardError.h"

#include <cstdio>
#include <mutex>

#include <fcntl.h>
#include <unistd.h>

namespace Standalone {
namespace {

std::mutex mutex;
int quietScopes = 0;
int saved = -1; // the user's standard error, while ours leads nowhere

} // namespace

QuietLibraries::QuietLibraries() {
    const std::lock_guard lock(mutex);
    if (quietScopes++ > 0) return;
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (nowhere < 0) return;
    std::fflush(stderr);
    saved = fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 3);
    if (saved >= 0) dup2(nowhere, STDERR_FILENO);
    close(nowhere);
}

QuietLibraries::~QuietLibraries() {
    const std::lock_guard lock(mutex);
    if (--quietScopes > 0 || saved < 0) return;
    std::fflush(stderr);
    dup2(saved, STDERR_FILENO);
    close(saved);
    saved = -1;
}

void tell(std::string message) {
    for (char& c : message)
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7f) c = '?';
    message = "orvelscope: " + message + "\n";
    const std::lock_guard lock(mutex);
    std::fflush(stderr);
    const int target = saved >= 0 ? saved : STDERR_FILENO;
    // Nobody is left to tell that this failed.
    [[maybe_unused]] const ssize_t written = write(target, message.data(), message.size());
}

} // namespace Standalone
