#pragma once

// The instruction sets that kernels are compiled for, and which of them a processor has.

#include "platform/Processor.h"

namespace orvane {

enum class InstructionSet { Baseline, Avx2, Avx512 };

/// "baseline", "AVX2" or "AVX-512".
const char *Name(InstructionSet instructionSet);

/// Whether a processor with these features can run it.
bool IsSupported(InstructionSet instructionSet, const platform::ProcessorFeatures &features);
/// Whether this processor (and its operating system) can run it.
bool IsSupported(InstructionSet instructionSet);

} // namespace orvane
