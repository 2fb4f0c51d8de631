#include "AllocationCount.h"

#include <cstdlib>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)

std::size_t allocationsOfThisThread() { return 0; }
bool allocationsAreCounted() { return false; }

#else

namespace {
// In the program itself, so that reading it needs no heap of its own.
thread_local std::size_t calls = 0;
} // namespace

std::size_t allocationsOfThisThread() { return calls; }
bool allocationsAreCounted() { return true; }

// The C library lets a program put its own functions before these names. operator new and delete
// come here too, through malloc and free.
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* memory);

__attribute__((visibility("default"))) void* malloc(std::size_t size) {
    ++calls;
    return __libc_malloc(size);
}
__attribute__((visibility("default"))) void* calloc(std::size_t count, std::size_t size) {
    ++calls;
    return __libc_calloc(count, size);
}
__attribute__((visibility("default"))) void* realloc(void* memory, std::size_t size) {
    ++calls;
    return __libc_realloc(memory, size);
}
__attribute__((visibility("default"))) void* aligned_alloc(std::size_t alignment,
                                                           std::size_t size) {
    ++calls;
    return __libc_memalign(alignment, size);
}
__attribute__((visibility("default"))) int
posix_memalign(void** memory, std::size_t alignment, std::size_t size) {
    ++calls;
    *memory = __libc_memalign(alignment, size);
    return *memory == nullptr ? 12 : 0;
}
__attribute__((visibility("default"))) void free(void* memory) {
    ++calls;
    __libc_free(memory);
}
}

#endif
