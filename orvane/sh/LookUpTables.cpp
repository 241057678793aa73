#include "orvane/sh/LookUpTables.h"

#include "orvane/base/Constants.h"
#include "orvane/base/Errors.h"
#include "orvane/base/Limits.h"
#include "orvane/kernels/Kernels.h"
#include "orvane/sh/Basis.h"
#include "orvane/sh/SphericalHarmonic.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <string>

namespace orvane {
namespace {

/// How many polar rows Generate makes: those of the angles up to pi. Roundings add less than a
/// millionth to an angle, which is less than half a step.
std::size_t RowsUpToPi(std::int32_t steps)
{
    return static_cast<std::size_t>(steps) / 2 + 1;
}

} // namespace

void RequireFoldable(double phi, int order)
{
    if (!std::isfinite(phi) || !std::isfinite(order * phi))
        throw std::invalid_argument(IllegalValue("phi", phi, "a finite angle"));
}

void RequireTerms(const SphericalHarmonic &sh, const char *name, std::int32_t bands)
{
    const std::int32_t most = std::min<std::int32_t>(sh.GetNumCoefficients(), tableCoefficients);
    if (CoefficientCount(bands) > most)
        throw std::invalid_argument(IllegalValue(
            name, bands, "bands of at most " + std::to_string(most) + " coefficients"));
}

void LookUpTables::Generate(std::int32_t steps, const Kernels &kernels)
{
    RequireInRange("numSteps", steps, 1, maxTableSteps);

    // All memory first, beside the old tables; tables of the same size are filled again in place.
    const auto count = static_cast<std::size_t>(steps);
    if (cosLut.size() != count) {
        std::vector<double> cosines(count);
        std::vector<double> sines(count);
        std::vector<std::vector<double>> legendre(tableCoefficients, std::vector<double>(count));
        std::vector<std::int32_t> orders(tableCoefficients);
        AlignedArray<double> rows;
        rows.reserve(count * polarRowLength);
        rows.resize(RowsUpToPi(steps) * polarRowLength);
        cosLut.swap(cosines);
        sinLut.swap(sines);
        legendreLut.swap(legendre);
        orderLut.swap(orders);
        polarRows.swap(rows);
    }

    // From here on nothing fails.
    const double step = static_cast<float>(TWO_PI_F) / static_cast<float>(steps);
    for (std::int32_t k = 0; k < steps; ++k) {
        const double angle = k * step;
        sinLut[k] = std::sin(angle);
        cosLut[k] = std::cos(angle);
    }
    angleScale = static_cast<float>(steps) * static_cast<float>(INV_TWO_PI_F);
    numSteps = steps;
    maxBands = tableBands;
    maxCoefficients = tableCoefficients;

    std::array<double *, tableCoefficients> legendre;
    for (int l = 0; l < tableBands; ++l)
        for (int m = -l; m <= l; ++m) {
            const int index = CoefficientIndex(l, m);
            orderLut[index] = m;
            legendre[index] = legendreLut[index].data();
        }
    kernels.legendre({cosLut.data(), steps, NormalisationTable().data(), legendre.data(),
                      polarRows.data(), static_cast<std::int32_t>(NumPolarRows())});
}

void LookUpTables::Require() const
{
    if (cosLut.empty())
        throw NotReady("there are no lookup tables; call GenerateLookUpTables first");
}

std::int32_t LookUpTables::Step(double angle) const
{
    return TruncateToInt32(angleScale * angle);
}

std::int32_t LookUpTables::FoldedStep(double angle) const
{
    return std::min(Step(WrapAngle(angle)), numSteps - 1);
}

std::int32_t LookUpTables::PolarStep(double theta) const
{
    const std::int32_t step = Step(theta);
    if (!(theta >= 0.0) || step >= numSteps)
        throw std::invalid_argument(
            IllegalValue("theta", theta, "a polar angle from 0 to pi, within the tables"));
    return step;
}

double LookUpTables::BasisValue(std::int32_t index, double phi, double theta) const
{
    Require();
    RequireInRange<std::out_of_range>("index", index, 0, tableCoefficients - 1);
    const std::int32_t m = orderLut[index];
    const std::int32_t order = std::abs(m);
    RequireFoldable(phi, order);
    const double polar = legendreLut[index][PolarStep(theta)] * NormalisationTable()[index];
    if (m == 0)
        return polar;
    return polar * (m > 0 ? cosLut : sinLut)[FoldedStep(order * phi)];
}

double LookUpTables::Evaluate(const SphericalHarmonic &sh, std::int32_t bands, const char *name,
                              double phi, double theta, const Kernels &kernels)
{
    const std::int32_t count = CoefficientCount(bands);
    if (count < 1)
        return 0.0;
    Require();
    RequireTerms(sh, name, bands);
    const int orders = BandsReached(count);
    RequireFoldable(phi, orders - 1);
    const std::int32_t step = PolarStep(theta);
    EnsurePolarRow(step);
    const double *polarRow = polarRows.data() + std::size_t{polarRowLength} * step;
    AngleFactors factors;
    kernels.angleFactors(Angles(), phi, orders, factors);
    return kernels.evaluation(sh.coefficients.data(), count, polarRow, factors);
}

/// As the kernel would fill them, in the memory that Generate has taken.
void LookUpTables::MakeRowsBeyondPi()
{
    std::size_t step = NumPolarRows();
    const std::size_t end = cosLut.size();
    polarRows.resize(end * polarRowLength);
    const std::array<double, tableCoefficients> &normalisation = NormalisationTable();
    constexpr std::size_t chunkSteps = 32; // rows that stay in the cache meanwhile
    while (step < end) {
        const std::size_t chunkEnd = std::min(step + chunkSteps, end);
        for (int l = 0; l < tableBands; ++l)
            for (int m = 0; m <= l; ++m) {
                const int index = CoefficientIndex(l, m);
                const double *legendre = legendreLut[index].data();
                for (std::size_t k = step; k < chunkEnd; ++k)
                    polarRows[k * polarRowLength + PolarIndex(l, m)] =
                        legendre[k] * normalisation[index];
            }
        step = chunkEnd;
    }
}

} // namespace orvane
