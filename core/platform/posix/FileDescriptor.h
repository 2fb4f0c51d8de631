// A POSIX file descriptor that closes itself.
#pragma once

#include <unistd.h>

#include <utility>

namespace Core {

class FileDescriptor {
  public:
    explicit FileDescriptor(int number) noexcept
        : number_(number) {}
    FileDescriptor(FileDescriptor&& other) noexcept
        : number_(std::exchange(other.number_, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }
    ~FileDescriptor() {
        if (isOpen()) ::close(number_);
    }

    bool isOpen() const noexcept { return number_ >= 0; }
    int get() const noexcept { return number_; }
    /// False when the system reports that written data was lost.
    bool close() noexcept { return ::close(std::exchange(number_, -1)) == 0; }

  private:
    int number_;
};

} // namespace Core
