#include "platform/Processor.h"

#include <cpuid.h>

namespace platform {

namespace {

constexpr bool Has(unsigned int bits, int bit)
{
    return (bits >> bit & 1) != 0;
}

/// The extended control register 0: which registers the operating system keeps.
unsigned int KeptRegisters()
{
    unsigned int low, high;
    __asm__("xgetbv" : "=a"(low), "=d"(high) : "c"(0));
    return low;
}

} // namespace

ProcessorFeatures AskProcessor()
{
    ProcessorFeatures features;
    unsigned int a, b, c, d;
    if (!__get_cpuid(1, &a, &b, &c, &d))
        return features;
    constexpr int fma = 12, osxsave = 27, avx = 28; // of leaf 1, in ecx
    if (!Has(c, osxsave) || !Has(c, avx))
        return features;
    constexpr unsigned int vectors256 = 0x6;  // SSE and the upper halves
    constexpr unsigned int vectors512 = 0xE6; // and masks, and both kinds of upper parts
    const unsigned int kept = KeptRegisters();
    if ((kept & vectors256) != vectors256)
        return features;
    features.fma = Has(c, fma);
    if (!__get_cpuid_count(7, 0, &a, &b, &c, &d))
        return features;
    constexpr int avx2 = 5, avx512f = 16, avx512dq = 17, avx512bw = 30, avx512vl = 31; // in ebx
    features.avx2 = Has(b, avx2);
    if ((kept & vectors512) != vectors512)
        return features;
    features.avx512f = Has(b, avx512f);
    features.avx512dq = Has(b, avx512dq);
    features.avx512bw = Has(b, avx512bw);
    features.avx512vl = Has(b, avx512vl);
    return features;
}

} // namespace platform
