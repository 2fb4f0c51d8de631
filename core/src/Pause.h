// The hint that a loop is only waiting for another core.
#pragma once

#if defined(__x86_64__) || defined(__i386__)
#include <immintrin.h>
#endif

namespace Core::Threads {

inline void pauseCpu() noexcept {
#if defined(__x86_64__) || defined(__i386__)
    _mm_pause();
#endif
}

} // namespace Core::Threads
