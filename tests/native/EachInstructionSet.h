#pragma once

// Every kernel is compared with its literal twin at each instruction set that this processor has.

#include "orvane/kernels/Kernels.h"

#include <vector>

inline std::vector<const orvane::Kernels *> SupportedKernels()
{
    using orvane::InstructionSet;
    std::vector<const orvane::Kernels *> supported;
    for (const auto set : {InstructionSet::Baseline, InstructionSet::Avx2, InstructionSet::Avx512})
        if (orvane::IsSupported(set))
            supported.push_back(&orvane::KernelsFor(set));
    return supported;
}
