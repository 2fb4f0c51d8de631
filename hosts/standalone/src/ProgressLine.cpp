// A line on standard error that tells how far a long job has come.
#include "ProgressLine.h"

#include <algorithm>
#include <cstdio>

#include <unistd.h>

namespace Standalone {

ProgressLine::ProgressLine(const char* doing, std::int64_t total)
    : doing_(doing)
    , total_(total)
    , visible_(total > 0 && isatty(STDERR_FILENO) == 1) {}

ProgressLine::~ProgressLine() {
    if (shownPercent_ >= 0) std::fputs("\r\033[K", stderr);
}

void ProgressLine::show(std::int64_t done) {
    if (!visible_) return;
    const auto percent = static_cast<int>(std::min<std::int64_t>(100, done * 100 / total_));
    if (percent == shownPercent_) return;
    shownPercent_ = percent;
    std::fprintf(stderr, "\r%s %3d %%", doing_, percent);
}

} // namespace Standalone
