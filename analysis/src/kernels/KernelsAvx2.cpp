// The loops for processors with AVX2; CMake compiles this file with that instruction set.
#define KERNEL_SET kAvx2Kernels
#define KERNEL_NAME "avx2"
#include "KernelLoops.inl"
