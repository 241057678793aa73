#include "orvane/sh/LookUpTables.h"

#include "orvane/base/Constants.h"
#include "orvane/base/Errors.h"
#include "orvane/base/Limits.h"
#include "orvane/base/PolarRow.h"
#include "orvane/kernels/Kernels.h"
#include "orvane/sh/Basis.h"
#include "orvane/sh/SphericalHarmonic.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string>
#include <utility>

namespace orvane {
namespace {

/// Steps of the angles up to pi. Roundings add less than a millionth to an angle, which is less
/// than half a step.
std::int32_t StepsUpToPi(std::int32_t steps)
{
    return steps / 2 + 1;
}

/// Room for so many steps, in the kernel's whole blocks.
std::size_t Room(std::int32_t steps)
{
    constexpr std::size_t block = legendreBlock;
    return (static_cast<std::size_t>(steps) + block - 1) / block * block;
}

/// Distance between the arrays of so many steps: an odd number of cache lines.
std::size_t Stride(std::int32_t steps)
{
    constexpr std::size_t line = 8; // values
    return (Room(steps) / line | 1) * line;
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
        std::vector<std::span<const double>> legendre(tableCoefficients);
        std::vector<std::int32_t> orders(tableCoefficients);
        // Two blocks, and not cleared. The system gives a page when something is written there, at
        // more than the cost of filling it; the GNU allocator keeps freed blocks of up to 32 MB for
        // the next builder.
        AlignedArray arrays(legendrePairs * Stride(steps));
        AlignedArray rows(polarRowLength * Room(steps));
        cosLut.swap(cosines);
        sinLut.swap(sines);
        legendreLut.swap(legendre);
        orderLut.swap(orders);
        std::swap(legendreMemory, arrays);
        std::swap(rowMemory, rows);
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

    for (int l = 0; l < tableBands; ++l)
        for (int m = -l; m <= l; ++m)
            orderLut[CoefficientIndex(l, m)] = m;
    fillLegendre = kernels.legendre;
    FillPolarSteps(StepsUpToPi(steps));
}

/// Fills the first `count` steps. Arrays of fewer steps lie closer together, on fewer pages.
void LookUpTables::FillPolarSteps(std::int32_t count)
{
    const std::size_t stride = Stride(count);
    for (int l = 0; l < tableBands; ++l)
        for (int m = -l; m <= l; ++m) {
            const double *array = legendreMemory.Data() + LegendrePair(l, std::abs(m)) * stride;
            legendreLut[CoefficientIndex(l, m)] = {array, static_cast<std::size_t>(count)};
        }
    polarRows = {rowMemory.Data(), static_cast<std::size_t>(count) * polarRowLength};
    polarSteps = count;
    fillLegendre({cosLut.data(), count, NormalisationTable().data(), legendreMemory.Data(),
                  static_cast<std::ptrdiff_t>(stride), rowMemory.Data()});
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

double LookUpTables::BasisValue(std::int32_t index, double phi, double theta)
{
    Require();
    RequireInRange<std::out_of_range>("index", index, 0, tableCoefficients - 1);
    const std::int32_t m = orderLut[index];
    const std::int32_t order = std::abs(m);
    RequireFoldable(phi, order);
    const std::int32_t step = PolarStep(theta);
    EnsurePolarStep(step);
    const double polar = legendreLut[index][step] * NormalisationTable()[index];
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
    // The square of a number that is no number of bands may wrap around to a count that ends within
    // a band.
    const int orders = bands >= 0 && bands <= tableBands ? bands : BandsReached(count);
    RequireFoldable(phi, orders - 1);
    const std::int32_t step = PolarStep(theta);
    EnsurePolarStep(step);
    const double *polarRow = polarRows.data() + std::size_t{polarRowLength} * step;
    return kernels.evaluation(Angles(), phi, polarRow, sh.coefficients.data(), count, orders);
}

} // namespace orvane
