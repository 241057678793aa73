#include "orvane/builder/SHBuilder.h"

#include "orvane/kernels/Kernels.h"

SHBuilder::SHBuilder() : kernels(&orvane::BestKernels()) {}

SHBuilder::~SHBuilder()
{
    // The image goes before all arrays, which follow in reverse order of their declaration.
    imageBuffer.reset();
}

/// @throws std::invalid_argument where the processor lacks it
void SHBuilder::UseInstructionSet(orvane::InstructionSet instructionSet)
{
    kernels = &orvane::KernelsFor(instructionSet);
}
