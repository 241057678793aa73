#include "orvane/kernels/InstructionSet.h"

namespace orvane {

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

} // namespace orvane
