#include "orvane/builder/Projector.h"

#include "orvane/kernels/Kernels.h"

#include <algorithm>

namespace orvane {

Projector::Projector(LookUpTables &tables, const Kernels &kernels, std::int32_t numCoefficients,
                     Rounding rounding)
    : tables(tables), numCoefficients(numCoefficients),
      numSums(std::min<std::int32_t>(numCoefficients, tableCoefficients)),
      bands(BandsReached(numSums)),
      addPoints(rounding == Rounding::Weighted ? kernels.addWeighted : kernels.addPixels)
{
}

void Projector::StartAt(const SphericalHarmonic &sh)
{
    ForEachSum(std::min(numSums, sh.GetNumCoefficients()),
               [&](std::int32_t index, float &sum) { sum = sh.coefficients[index] + 0.0f; });
}

void Projector::Flush()
{
    if (numPoints > 0)
        addPoints({tables.Angles(), tables.polarRows.data()}, points.data(), numPoints, bands,
                  sums);
    numPoints = 0;
}

void Projector::Store(float weight, std::int32_t numBands, SphericalHarmonic &sh)
{
    Flush();
    sh.coefficients.assign_zeros(static_cast<std::size_t>(numCoefficients));
    sh.numBands = numBands;
    ForEachSum(numSums,
               [&](std::int32_t index, float &sum) { sh.coefficients[index] = weight * sum; });
    // Without points, more coefficients than the tables cover may be asked for: their sums are 0.
    std::fill(sh.coefficients.begin() + numSums, sh.coefficients.end(), weight * 0.0f);
}

} // namespace orvane
