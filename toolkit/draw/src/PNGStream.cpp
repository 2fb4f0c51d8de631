// Files and archive entries as sources of PNG bytes.
#include "draw/PNGStream.h"

#include "draw/ResourceArchive.h"

#include <cstring>
#include <filesystem>

namespace Sorel {

PNGNewResourceStream::PNGNewResourceStream(const char* name) {
    if (name != nullptr) data_ = CResourceArchive::instance().find(name, size_);
}

PNGNewResourceStream::~PNGNewResourceStream() { CResourceArchive::instance().free(data_); }

bool PNGNewResourceStream::read(void* buffer, std::size_t length) {
    if (data_ == nullptr || length > size_ - position_) return false;
    std::memcpy(buffer, data_ + position_, length);
    position_ += length;
    return true;
}

PNGFileStream::PNGFileStream(const std::string& utf8Path) {
    std::error_code error;
    const std::filesystem::path path(std::u8string(utf8Path.begin(), utf8Path.end()));
    // A directory opens on some systems, and then fails at every read.
    if (std::filesystem::is_regular_file(path, error)) file_.open(path, std::ios::binary);
}

PNGFileStream::~PNGFileStream() = default;

bool PNGFileStream::read(void* buffer, std::size_t length) {
    if (!file_.is_open() || length == 0) return length == 0;
    return static_cast<bool>(
        file_.read(static_cast<char*>(buffer), static_cast<std::streamsize>(length)));
}

} // namespace Sorel
