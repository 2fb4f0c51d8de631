// The spectrum loops for every processor, in vectors of four floats.
#define KERNEL_SET kBaselineSpectrumKernels
#define KERNEL_NAME "baseline"
#define KERNEL_LANES 4
#include "SpectrumLoops.inl"
