#include "TextFile.h"

#include "FileDescriptor.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>

namespace Core {

ReadResult readTextFile(const std::filesystem::path& path, std::string& text) {
    text.clear();
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (!file.isOpen())
        return errno == ENOENT || errno == ENOTDIR ? ReadResult::absent : ReadResult::failed;
    struct stat status {};
    if (::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return ReadResult::failed;

    std::string content;
    std::array<char, 4096> part;
    for (;;) {
        const ssize_t count = ::read(file.get(), part.data(), part.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return ReadResult::failed;
        if (count == 0) break;
        content.append(part.data(), static_cast<std::size_t>(count));
        if (content.size() > kMaxTextFileBytes) return ReadResult::failed;
    }
    text = std::move(content);
    return ReadResult::done;
}

} // namespace Core
