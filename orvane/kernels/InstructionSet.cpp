#include "orvane/kernels/InstructionSet.h"

#include "orvane/kernels/Kernels.h"

#include <stdexcept>
#include <string>

namespace orvane {

extern const Kernels kernelsBaseline;
extern const Kernels kernelsAvx2;
extern const Kernels kernelsAvx512;

const char *Name(InstructionSet instructionSet)
{
    switch (instructionSet) {
    case InstructionSet::Avx512:
        return "AVX-512";
    case InstructionSet::Avx2:
        return "AVX2";
    case InstructionSet::Baseline:
        break;
    }
    return "baseline";
}

bool IsSupported(InstructionSet instructionSet)
{
    switch (instructionSet) {
    case InstructionSet::Avx512:
        return __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512dq") &&
               __builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("avx512vl") &&
               __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");
    case InstructionSet::Avx2:
        return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");
    case InstructionSet::Baseline:
        break;
    }
    return true;
}

const Kernels &KernelsFor(InstructionSet instructionSet)
{
    if (!IsSupported(instructionSet))
        throw std::invalid_argument(std::string("this processor has no ") + Name(instructionSet));
    switch (instructionSet) {
    case InstructionSet::Avx512:
        return kernelsAvx512;
    case InstructionSet::Avx2:
        return kernelsAvx2;
    case InstructionSet::Baseline:
        break;
    }
    return kernelsBaseline;
}

const Kernels &BestKernels()
{
    static const Kernels &best =
        KernelsFor(IsSupported(InstructionSet::Avx512) ? InstructionSet::Avx512
                   : IsSupported(InstructionSet::Avx2) ? InstructionSet::Avx2
                                                       : InstructionSet::Baseline);
    return best;
}

} // namespace orvane
