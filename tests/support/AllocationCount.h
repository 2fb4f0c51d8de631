// Counts what the calling thread takes from the heap.
#pragma once

#include <cstddef>

/// Heap calls (malloc and relatives, free, new, delete) made by this thread since it started.
/// Always 0 in sanitizer builds, which bring a heap of their own: check allocationsAreCounted().
std::size_t allocationsOfThisThread();
bool allocationsAreCounted();
