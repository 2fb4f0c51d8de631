// A line on standard error that tells how far a long job has come.
#pragma once

#include <cstdint>

namespace Standalone {

/// Silent unless standard error is a terminal. Leaves an empty line behind when it goes.
class ProgressLine {
  public:
    /// `total` of the job, in the unit that `show` counts in; 0 when nobody knows.
    /// `doing` is what the line says in front of the percentage.
    ProgressLine(const char* doing, std::int64_t total);
    ~ProgressLine();
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    void show(std::int64_t done);

  private:
    const char* doing_;
    std::int64_t total_;
    bool visible_;
    int shownPercent_ = -1;
};

} // namespace Standalone
