#include "orvane/kernels/Kernels.h"

#include <stdexcept>
#include <string>

namespace orvane {

extern const Kernels kernelsBaseline;
extern const Kernels kernelsAvx2;
extern const Kernels kernelsAvx512;

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
