// The loops for every x86-64 processor.
#define KERNEL_SET kBaselineKernels
#define KERNEL_NAME "baseline"
#include "KernelLoops.inl"
