#define ORVANE_INSTRUCTION_SET Baseline
#define ORVANE_VECTOR_BYTES 16
#define ORVANE_KERNEL_TABLE kernelsBaseline
#include "orvane/kernels/KernelTable.inl"
