// How much memory this process has, and the machine.
#pragma once

namespace Core {

/// Megabytes of 2^20 bytes; 0 where the system does not tell.
struct MemoryFigures {
    float residentMb = 0;  ///< of this process, in physical memory now
    float installedMb = 0; ///< of the machine
};

/// Threads: any but the audio thread; reads a file of the system.
MemoryFigures readMemoryFigures();

} // namespace Core
