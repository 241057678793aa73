#include "orvane/builder/Projector.h"

#include "orvane/builder/LookUpTables.h"
#include "orvane/kernels/Kernels.h"
#include "orvane/sh/Basis.h"

#include <algorithm>

namespace orvane {
Projector::Projector(const SHBuilder &builder, std::int32_t numCoefficients, Rounding rounding)
    : builder(builder), numCoefficients(numCoefficients), bands(BandsReached(numCoefficients)),
      addPoints(rounding == Rounding::Weighted ? builder.kernels->addWeighted
                                               : builder.kernels->addPixels)
{
}

void Projector::StartAt(const SphericalHarmonic &sh)
{
    ForEachSum(std::min(numCoefficients, sh.GetNumCoefficients()),
               [&](std::int32_t index, float &sum) { sum = sh.coefficients[index] + 0.0f; });
}

void Projector::Flush()
{
    if (bands > 0) {
        addPoints({AngleTablesOf(builder), builder.polarTable.rows.data()}, points.data(),
                  numPoints, bands, sums);
    }
    numPoints = 0;
}

void Projector::Store(float weight, std::int32_t numBands, SphericalHarmonic &sh)
{
    Flush();
    sh.coefficients.assign_zeros(static_cast<std::size_t>(numCoefficients));
    sh.numBands = numBands;
    ForEachSum(numCoefficients,
               [&](std::int32_t index, float &sum) { sh.coefficients[index] = weight * sum; });
}

} // namespace orvane
