#include "orvane/builder/LookUpTables.h"

#include "orvane/builder/SHBuilder.h"
#include "orvane/kernels/Kernels.h"
#include "orvane/sh/Basis.h"
#include "orvane/sh/Constants.h"
#include "orvane/sh/Errors.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

using namespace orvane;

namespace {

/// The largest table size: 1.9 GB of Legendre arrays, 1.2 GB of polar rows.
constexpr std::int32_t mostSteps = 262144;

/// The sum of the set's first CoefficientCount(bands) terms. `name` is what the caller's band count
/// is called in a refusal.
double Evaluate(const SHBuilder &builder, const SphericalHarmonic &sh, double phi, double theta,
                const char *name, std::int32_t bands)
{
    const std::int32_t count = CoefficientCount(bands);
    if (count < 1)
        return 0.0;
    RequireLookUpTables(builder);
    RequireTerms(sh, name, bands);
    const int orders = BandsReached(count);
    RequireFoldable(phi, orders - 1);
    const std::size_t step = PolarStep(builder, theta);
    RequirePolarRow(builder, step);
    const double *polarRow = builder.polarTable.Row(step);
    AngleFactors factors;
    builder.kernels->angleFactors(AngleTablesOf(builder), phi, orders, factors);
    return builder.kernels->evaluation(sh.coefficients.data(), count, polarRow, factors);
}

/// How many polar rows GenerateLookUpTables makes: those of the angles up to pi. Roundings add less
/// than a millionth to an angle, which is less than half a step.
std::size_t RowsUpToPi(std::int32_t steps)
{
    return static_cast<std::size_t>(steps) / 2 + 1;
}

/// Adds the polar rows of all other steps, as the kernel would fill them, in the memory that
/// GenerateLookUpTables has taken: nothing fails here.
void CompletePolarRows(const SHBuilder &builder)
{
    AlignedArray<double> &rows = builder.polarTable.rows;
    std::size_t step = builder.polarTable.Steps();
    const std::size_t numSteps = builder.cosLut.size();
    rows.resize(numSteps * polarRowLength);
    const std::array<double, tableCoefficients> &normalisation = NormalisationTable();
    constexpr std::size_t chunkSteps = 32; // rows that stay in the cache meanwhile
    while (step < numSteps) {
        const std::size_t end = std::min(step + chunkSteps, numSteps);
        for (int l = 0; l < tableBands; ++l)
            for (int m = 0; m <= l; ++m) {
                const int index = CoefficientIndex(l, m);
                const double *legendre = builder.legendreLut[index].data();
                for (std::size_t k = step; k < end; ++k)
                    rows[k * polarRowLength + PolarIndex(l, m)] =
                        legendre[k] * normalisation[index];
            }
        step = end;
    }
}

} // namespace

namespace orvane {

void RequireLookUpTables(const SHBuilder &builder)
{
    if (builder.cosLut.empty())
        throw NotReady("there are no lookup tables; call GenerateLookUpTables first");
}

void RequireTerms(const SphericalHarmonic &sh, const char *name, std::int32_t bands)
{
    const std::int32_t most = std::min<std::int32_t>(sh.GetNumCoefficients(), tableCoefficients);
    if (CoefficientCount(bands) > most)
        throw std::invalid_argument(IllegalValue(
            name, bands, "bands of at most " + std::to_string(most) + " coefficients"));
}

std::size_t PolarStep(const SHBuilder &builder, double theta)
{
    const std::int32_t step = TableIndex(builder.angleScale, theta);
    if (!(theta >= 0.0) || step >= builder.numSteps)
        throw std::invalid_argument(
            IllegalValue("theta", theta, "a polar angle from 0 to pi, within the tables"));
    return static_cast<std::size_t>(step);
}

void RequirePolarRow(const SHBuilder &builder, std::size_t step)
{
    if (step >= builder.polarTable.Steps())
        CompletePolarRows(builder);
}

void RequireFoldable(double phi, int order)
{
    if (!std::isfinite(phi) || !std::isfinite(order * phi))
        throw std::invalid_argument(IllegalValue("phi", phi, "a finite angle"));
}

AngleTables AngleTablesOf(const SHBuilder &builder)
{
    return {builder.cosLut.data(), builder.sinLut.data(), builder.angleScale, builder.numSteps};
}

} // namespace orvane

/// Fills the tables of `steps` steps to a full circle; with any earlier ones kept where it throws.
/// @param steps 1 to 262,144
/// @throws std::invalid_argument outside that range; std::bad_alloc
void SHBuilder::GenerateLookUpTables(std::int32_t steps)
{
    if (steps < 1 || steps > mostSteps)
        throw std::invalid_argument(
            IllegalValue("numSteps", steps, "1 to " + std::to_string(mostSteps)));

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
        polarTable.rows.swap(rows);
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
    kernels->legendre({cosLut.data(), steps, NormalisationTable().data(), legendre.data(),
                       polarTable.rows.data(), static_cast<std::int32_t>(polarTable.Steps())});
}

/// The value of the set at a point.
/// @param phi azimuth in radians, finite; each m * phi is folded
/// @param theta polar angle in radians, not folded
/// @throws NotReady before the tables exist; std::invalid_argument for an angle without a table
/// entry or a band count beyond the set or 30. A count whose square, a wrapping 32-bit product, is
/// below 1 gives 0 before anything else is looked at.
double SHBuilder::GetValueAt(const SphericalHarmonic &sh, double phi, double theta) const
{
    return Evaluate(*this, sh, phi, theta, "numBands", sh.numBands);
}

/// The same over the first band * band coefficients.
double SHBuilder::GetValueAtBand(const SphericalHarmonic &sh, double phi, double theta,
                                 std::int32_t band) const
{
    return Evaluate(*this, sh, phi, theta, "band", band);
}

/// The basis function of one coefficient index at a point.
/// @param index 0 to 899
/// @throws as GetValueAt; std::out_of_range
double SHBuilder::SHBasisFunc(std::int32_t index, double phi, double theta) const
{
    RequireLookUpTables(*this);
    if (index < 0 || index >= tableCoefficients)
        throw std::out_of_range(
            IllegalValue("index", index, "0 to " + std::to_string(tableCoefficients - 1)));
    const std::int32_t m = orderLut[index];
    const std::int32_t order = std::abs(m);
    RequireFoldable(phi, order);
    const double polar = legendreLut[index][PolarStep(*this, theta)] * NormalisationTable()[index];
    if (m == 0)
        return polar;
    const std::int32_t step = TableIndex(angleScale, WrapAngle(order * phi));
    return polar * (m > 0 ? cosLut : sinLut)[std::min(step, numSteps - 1)];
}
