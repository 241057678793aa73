#define ORVANE_INSTRUCTION_SET Avx2
#define ORVANE_VECTOR_BYTES 32
#define ORVANE_KERNEL_TABLE kernelsAvx2
#include "orvane/kernels/KernelTable.inl"
