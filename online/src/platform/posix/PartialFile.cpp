#include "PartialFile.h"

#include "online/DownloadName.h"

#include <unistd.h>

#include <atomic>
#include <string>

namespace Dorna {

namespace {
std::string temporaryName() {
    static std::atomic<unsigned> counter{0};
    return ".orvel-download-" + std::to_string(::getpid()) + "-" + std::to_string(++counter) +
           ".part";
}
} // namespace

PartialFile::PartialFile(std::filesystem::path target)
    : target_(std::move(target))
    , temporary_(target_.parent_path() / temporaryName())
    , file_(std::fopen(temporary_.c_str(), "wxe")) {} // a new one, and not for child processes

PartialFile::~PartialFile() {
    if (!isOpen()) return;
    file_.reset();
    (void)::unlink(temporary_.c_str());
}

bool PartialFile::write(std::string_view bytes) {
    if (!isOpen() || std::fwrite(bytes.data(), 1, bytes.size(), file_.get()) != bytes.size())
        failed_ = true;
    return !failed_;
}

std::filesystem::path PartialFile::finish() {
    if (!isOpen() || failed_) return {};
    const bool onDisk = std::fflush(file_.get()) == 0 && ::fsync(fileno(file_.get())) == 0;
    std::filesystem::path name = freeFileName(target_);
    if (!onDisk || name.empty() || ::rename(temporary_.c_str(), name.c_str()) != 0) {
        failed_ = true;
        return {};
    }
    file_.reset();
    return name;
}

} // namespace Dorna
