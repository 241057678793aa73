#include "orvane/builder/Projector.h"

#include "orvane/builder/LookUpTables.h"
#include "orvane/kernels/Kernels.h"
#include "orvane/sh/Basis.h"

namespace orvane {
Projector::Projector(const SHBuilder &builder, std::int32_t numCoefficients, Rounding rounding)
    : builder(builder), numCoefficients(numCoefficients), bands(BandsReached(numCoefficients)),
      addPoints(rounding == Rounding::Weighted ? builder.kernels->addWeighted
                                               : builder.kernels->addPixels)
{
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
    for (int l = 0; l < bands; ++l)
        for (int m = -l; m <= l && CoefficientIndex(l, m) < numCoefficients; ++m) {
            const float sum = m < 0 ? sums.sine[PolarIndex(l, -m)] : sums.cosine[PolarIndex(l, m)];
            sh.coefficients[CoefficientIndex(l, m)] = weight * sum;
        }
}

} // namespace orvane
