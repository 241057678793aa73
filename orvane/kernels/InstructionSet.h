#pragma once

// What the processor can do, and the kernels made for it.

#include "platform/Processor.h"

namespace orvane {

enum class InstructionSet { Baseline, Avx2, Avx512 };

/// "baseline", "AVX2" or "AVX-512".
const char *Name(InstructionSet instructionSet);

/// Whether a processor with these features can run it.
bool IsSupported(InstructionSet instructionSet, const platform::ProcessorFeatures &features);
/// Whether this processor (and its operating system) can run it.
bool IsSupported(InstructionSet instructionSet);

struct Kernels;

/// The kernels compiled for one instruction set; all give the same bits.
/// @throws std::invalid_argument where the processor lacks it
const Kernels &KernelsFor(InstructionSet instructionSet);

/// The kernels for the widest instruction set of this processor.
const Kernels &BestKernels();

} // namespace orvane
