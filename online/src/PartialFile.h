// A file under a temporary name until all of it is there.
#pragma once

#include "online/HttpReply.h"

#include <cstdio>
#include <filesystem>
#include <memory>

namespace Dorna {

/// Threads: one at a time. Unless `finish` was successful nothing is left behind.
class PartialFile final : public IBodySink {
  public:
    /// The temporary file stands in the target's folder, hidden.
    explicit PartialFile(std::filesystem::path target);
    ~PartialFile();
    PartialFile(const PartialFile&) = delete;
    PartialFile& operator=(const PartialFile&) = delete;

    bool isOpen() const { return file_ != nullptr; }
    /// False when the disk takes no more; `hasFailed` from then on.
    bool write(std::string_view bytes) override;
    bool hasFailed() const { return failed_; }
    /// Brings it to the disk and gives it its name, with a number where that is taken. Empty when
    /// that failed.
    std::filesystem::path finish();

  private:
    struct Closer {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };

    std::filesystem::path target_;
    std::filesystem::path temporary_;
    std::unique_ptr<std::FILE, Closer> file_;
    bool failed_ = false;
};

} // namespace Dorna
