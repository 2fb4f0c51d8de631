#include "core/Paths.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>

#include <array>
#include <cerrno>
#include <string>

extern char** environ;

namespace Core {

namespace {
// How the child starts: with none of the host's open files, blocked or ignored signals.
class SpawnSettings {
  public:
    SpawnSettings() {
        posix_spawnattr_init(&attributes_);
        sigset_t signals;
        sigemptyset(&signals);
        posix_spawnattr_setsigmask(&attributes_, &signals);
        sigaddset(&signals, SIGCHLD);
        sigaddset(&signals, SIGPIPE);
        posix_spawnattr_setsigdefault(&attributes_, &signals);
        posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);

        posix_spawn_file_actions_init(&actions_);
        posix_spawn_file_actions_addopen(&actions_, 0, "/dev/null", O_RDONLY, 0);
#if defined(__GLIBC__) && __GLIBC_PREREQ(2, 34)
        posix_spawn_file_actions_addclosefrom_np(&actions_, 3);
#endif
    }
    ~SpawnSettings() {
        posix_spawn_file_actions_destroy(&actions_);
        posix_spawnattr_destroy(&attributes_);
    }
    SpawnSettings(const SpawnSettings&) = delete;
    SpawnSettings& operator=(const SpawnSettings&) = delete;

    /// The new process, or 0. `arguments` ends with a null pointer.
    pid_t start(char* const* arguments) const {
        pid_t child = 0;
        return posix_spawnp(&child, arguments[0], &actions_, &attributes_, arguments, environ) == 0
                   ? child
                   : 0;
    }

  private:
    posix_spawnattr_t attributes_;
    posix_spawn_file_actions_t actions_;
};

void waitFor(pid_t child) {
    // A host that reaps all children, or ignores their end, may have been faster: ECHILD.
    while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
    }
}
} // namespace

void openWithShell(const char* path) {
    if (path == nullptr || path[0] == 0) return;
    std::string target = path;
    if (target.front() == '-') target.insert(0, "./"); // a name, not an option

    // `setsid --fork` starts the opener as a process of its own and ends at once, so that waiting
    // for it is short and the opener never becomes a zombie of the host.
    std::string detach = "setsid";
    std::string fork = "--fork";
    std::string opener = "xdg-open";
    const SpawnSettings settings;
    std::array<char*, 5> detached{detach.data(), fork.data(), opener.data(), target.data(),
                                  nullptr};
    if (const pid_t child = settings.start(detached.data()); child != 0) return waitFor(child);

    // A system without it: start the opener itself and look after it at the next call.
    static pid_t last = 0;
    if (last != 0 && waitpid(last, nullptr, WNOHANG) != 0) last = 0;
    if (last != 0) return; // the one before is still at work
    last = settings.start(&detached[2]);
}

} // namespace Core
