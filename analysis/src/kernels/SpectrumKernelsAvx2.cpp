// The spectrum loops for processors with AVX2; CMake compiles this file with that instruction set.
#define KERNEL_SET kAvx2SpectrumKernels
#define KERNEL_NAME "avx2"
#define KERNEL_LANES 8
#include "SpectrumLoops.inl"
