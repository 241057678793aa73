#define ORVANE_INSTRUCTION_SET Avx512
#define ORVANE_VECTOR_BYTES 64
#define ORVANE_KERNEL_TABLE kernelsAvx512
#include "orvane/kernels/KernelTable.inl"
