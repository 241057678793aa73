#include "orvane/builder/SHBuilder.h"

#include "orvane/builder/PictureTables.h"
#include "orvane/builder/Random.h"
#include "orvane/kernels/Kernels.h"

SHBuilder::SHBuilder()
    : kernels(&orvane::BestKernels()), pictureTables(std::make_unique<orvane::PictureTables>())
{
}

SHBuilder::~SHBuilder()
{
    // The image goes before all arrays, which follow in reverse order of their declaration: that is
    // the order in which a builder's memory is given back.
    imageBuffer.reset();
}

void SHBuilder::UseInstructionSet(orvane::InstructionSet instructionSet)
{
    kernels = &orvane::KernelsFor(instructionSet);
}

void SHBuilder::GenerateLookUpTables(std::int32_t numSteps)
{
    tables.Generate(numSteps, *kernels);
}

double SHBuilder::GetValueAt(const SphericalHarmonic &sh, double phi, double theta)
{
    return tables.Evaluate(sh, sh.numBands, "numBands", phi, theta, *kernels);
}

double SHBuilder::GetValueAtBand(const SphericalHarmonic &sh, double phi, double theta,
                                 std::int32_t band)
{
    return tables.Evaluate(sh, band, "band", phi, theta, *kernels);
}

double SHBuilder::SHBasisFunc(std::int32_t index, double phi, double theta) const
{
    return tables.BasisValue(index, phi, theta);
}

void SHBuilder::GenerateImporanceIntegralMipMaps()
{
    integrals.Generate(tables);
}

void SHBuilder::SetRandomSeed(std::int32_t seed)
{
    platform::srand(static_cast<std::uint32_t>(seed));
}

double SHBuilder::GetGaussDensity(const double &x, const double &mean, const double &stdDev)
{
    return orvane::GaussDensity(x, mean, stdDev);
}
