#pragma once

namespace platform {

/// Features of the processor that the kernels are compiled for. A feature counts only where the
/// operating system keeps the registers that it needs.
struct ProcessorFeatures {
    bool fma = false;
    bool avx2 = false;
    bool avx512f = false;
    bool avx512dq = false;
    bool avx512bw = false;
    bool avx512vl = false;
};

/// Asks the processor by the instructions made for it, cpuid and xgetbv: not every compiler's
/// library has an answer.
///
/// Source: Intel 64 and IA-32 Architectures Software Developer's Manual, vol. 1, sections 14.3
/// (AVX), 14.5.3 (FMA), 14.7.1 (AVX2) and 15.2 to 15.4 (AVX-512).
ProcessorFeatures AskProcessor();

} // namespace platform
