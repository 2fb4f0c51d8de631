// A line on standard error that tells how far a long job has come.
#pragma once

#include <cstdint>

namespace Standalone {

/// Silent unless standard error is a terminal. Leaves an empty line behind when it goes.
class ProgressLine {
  public:
    /// `total` of the job, in the unit that `show` counts in; 0 when nobody knows.
    explicit ProgressLine(std::int64_t total);
    ~ProgressLine();
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    void show(std::int64_t done);

  private:
    std::int64_t total_;
    bool visible_;
    int shownPercent_ = -1;
};

} // namespace Standalone
