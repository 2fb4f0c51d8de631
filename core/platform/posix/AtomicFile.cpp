#include "core/AtomicFile.h"

#include "FileDescriptor.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <atomic>
#include <cerrno>
#include <cstdint>
#include <ctime>
#include <string>

namespace Core {

namespace fs = std::filesystem;

namespace {
// Not mkstemp: that one gives the file to its owner alone, and umask cannot be read safely.
fs::path temporaryName(const fs::path& folder) {
    static std::atomic<std::uint32_t> counter{0};
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return folder / (".orvel-" + std::to_string(::getpid()) + "-" + std::to_string(now.tv_nsec) +
                     "-" + std::to_string(++counter) + ".tmp");
}

FileDescriptor createNew(const fs::path& folder, fs::path& name) {
    for (int attempt = 0; attempt < 16; ++attempt) {
        name = temporaryName(folder);
        FileDescriptor file(::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
        if (file.isOpen() || errno != EEXIST) return file;
    }
    return FileDescriptor(-1);
}

bool writeAll(const FileDescriptor& file, std::span<const std::byte> content) noexcept {
    while (!content.empty()) {
        const ssize_t written = ::write(file.get(), content.data(), content.size());
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return false;
        content = content.subspan(static_cast<std::size_t>(written));
    }
    return true;
}

// The name is in the folder; a folder that cannot be brought to the disk is no reason to fail.
void syncFolder(const fs::path& folder) noexcept {
    const FileDescriptor handle(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (handle.isOpen()) (void)::fsync(handle.get());
}
} // namespace

bool writeFileAtomically(const fs::path& path, std::span<const std::byte> content) {
    if (!path.has_filename()) return false;
    std::error_code error;
    fs::path target = path;
    if (fs::is_symlink(path, error)) {
        target = fs::canonical(path, error);
        if (error) target = path; // points nowhere: the link itself gives way
    }
    const fs::path folder = target.has_parent_path() ? target.parent_path() : fs::path(".");

    struct stat old {};
    const bool replaces = ::stat(target.c_str(), &old) == 0;
    if (replaces && !S_ISREG(old.st_mode)) return false;
    // The folder alone decides about a rename; whoever protects a file means the file.
    if (replaces && ::faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0) return false;

    fs::path temporary;
    FileDescriptor file = createNew(folder, temporary);
    if (!file.isOpen()) return false;
    if (replaces) (void)::fchmod(file.get(), old.st_mode & 07777);

    const bool complete = writeAll(file, content) && ::fsync(file.get()) == 0;
    const bool closed = file.close();
    if (!complete || !closed || ::rename(temporary.c_str(), target.c_str()) != 0) {
        (void)::unlink(temporary.c_str());
        return false;
    }
    syncFolder(folder);
    return true;
}

bool writeFileAtomically(const fs::path& path, std::string_view content) {
    return writeFileAtomically(path, std::as_bytes(std::span(content)));
}

} // namespace Core
