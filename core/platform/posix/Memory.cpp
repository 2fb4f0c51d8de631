#include "core/Memory.h"

#include <unistd.h>

#include <cstdio>

namespace Core {

MemoryFigures readMemoryFigures() {
    constexpr double kBytesPerMb = 1024.0 * 1024.0;
    MemoryFigures figures;
    const double pageBytes = static_cast<double>(sysconf(_SC_PAGESIZE));
    const long installedPages = sysconf(_SC_PHYS_PAGES);
    if (installedPages > 0)
        figures.installedMb =
            static_cast<float>(static_cast<double>(installedPages) * pageBytes / kBytesPerMb);
    // Second number: pages that are resident.
    if (std::FILE* file = std::fopen("/proc/self/statm", "re")) {
        long total = 0;
        long resident = 0;
        if (std::fscanf(file, "%ld %ld", &total, &resident) == 2)
            figures.residentMb =
                static_cast<float>(static_cast<double>(resident) * pageBytes / kBytesPerMb);
        std::fclose(file);
    }
    return figures;
}

} // namespace Core
