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

bool IsSupported(InstructionSet instructionSet, const platform::ProcessorFeatures &features)
{
    const bool avx2 = features.avx2 && features.fma;
    switch (instructionSet) {
    case InstructionSet::Avx512:
        return avx2 && features.avx512f && features.avx512dq && features.avx512bw &&
               features.avx512vl;
    case InstructionSet::Avx2:
        return avx2;
    case InstructionSet::Baseline:
        break;
    }
    return true;
}

bool IsSupported(InstructionSet instructionSet)
{
    static const platform::ProcessorFeatures features = platform::AskProcessor();
    return IsSupported(instructionSet, features);
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
