#include "orvane/builder/SHBuilder.h"

#include "orvane/builder/PictureTables.h"

SHBuilder::SHBuilder()
    : kernels(&orvane::BestKernels()), pictureTables(std::make_unique<orvane::PictureTables>())
{
}

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
