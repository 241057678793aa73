#include "orvane/sh/Rotation.h"

#include "orvane/sh/Basis.h"
#include "orvane/sh/SphericalHarmonic.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <type_traits>

namespace orvane {
namespace {

/// u, v, w of the recurrence for band l, order m >= 0 and column n; `denominator` is
/// (l - n)(l + n), or 2 l (2 l - 1) for n = l.
struct RecurrenceCoefficients {
    RecurrenceCoefficients(int l, int m, int denominator)
    {
        const double d = m == 0 ? 1.0 : 0.0;
        const double denom = denominator;
        u = std::sqrt((l - m) * (l + m) / denom);
        v = std::sqrt((m + l - 1) * (d + 1.0) * (m + l) / denom) * 0.5 * (1.0 - d * 2.0);
        w = std::sqrt((l - m - 1) * (l - m) / denom) * -0.5 * (1.0 - d);
    }
    double u;
    double v;
    double w;
};

constexpr int columns = RotationConstants::blockColumns;
constexpr int orders = RotationConstants::edgeOrders;

/// The number of values that RotationConstants points to.
consteval int TableSize()
{
    int size = 0;
    for (int l = 2; l < tableBands; ++l)
        size += 3 * orders + (l + columns - 1) / columns * (l + 1) * 3 * columns;
    return size;
}

/// What RotationConstants points to, and it. Nothing of it is ever destroyed: a host may rotate
/// while the process ends.
class ConstantTables {
public:
    ConstantTables()
    {
        double *next = values;
        for (int l = 2; l < tableBands; ++l) {
            constants.edges[l] = next;
            for (int m = 0; m <= l; ++m)
                Put(RecurrenceCoefficients(l, m, 2 * l * (2 * l - 1)), next + m, orders);
            next += 3 * orders;

            for (int block = 0; block * columns < l; ++block) {
                constants.columns[block][l] = next;
                for (int m = 0; m <= l; ++m, next += 3 * columns)
                    for (int column = 0; column < columns && block * columns + column < l;
                         ++column) {
                        const int n = block * columns + column;
                        Put(RecurrenceCoefficients(l, m, (l - n) * (l + n)), next + column,
                            columns);
                    }
            }
        }
    }

    RotationConstants constants{};

private:
    static void Put(const RecurrenceCoefficients &values, double *to, int stride)
    {
        to[0] = values.u;
        to[stride] = values.v;
        to[2 * stride] = values.w;
    }

    // Each table starts on a whole cache line, the widest vector: their sizes are multiples of it.
    alignas(64) double values[TableSize()]{};
    static_assert(3 * orders % 8 == 0 && 3 * columns % 8 == 0);
};
static_assert(std::is_trivially_destructible_v<ConstantTables>);

const RotationConstants &Constants()
{
    static const ConstantTables tables;
    return tables.constants;
}

} // namespace

void RotateZ(const SphericalHarmonic &in, double angle, SphericalHarmonic &out)
{
    out.ResizeToBands(in.numBands);
    out.Clean();
    const int bands = std::min(in.numBands, WholeTableBands(out.coefficients.size()));
    const auto input = [&in](int index) {
        return static_cast<std::size_t>(index) < in.coefficients.size() ? in.coefficients[index]
                                                                        : 0.0f;
    };
    if (bands >= 1)
        out.coefficients[0] = input(0);

    // Multiples of the angle by the Chebyshev recurrence.
    double cosK[tableBands] = {1.0, std::cos(angle)};
    double sinK[tableBands] = {0.0, std::sin(angle)};
    for (int l = 1; l < bands; ++l) {
        if (l > 1) {
            cosK[l] = cosK[l - 1] * 2.0 * cosK[1] - cosK[l - 2];
            sinK[l] = sinK[l - 1] * 2.0 * cosK[1] - sinK[l - 2];
        }
        out.coefficients[CoefficientIndex(l, 0)] = input(CoefficientIndex(l, 0));
        for (int m = 1; m <= l; ++m) {
            const double sine = input(CoefficientIndex(l, -m));
            const double cosine = input(CoefficientIndex(l, m));
            out.coefficients[CoefficientIndex(l, -m)] =
                static_cast<float>(cosK[m] * sine - sinK[m] * cosine);
            out.coefficients[CoefficientIndex(l, m)] =
                static_cast<float>(cosK[m] * cosine + sinK[m] * sine);
        }
    }
}

void RotateSH(const SphericalHarmonic &in, const double matrix[3][3], SphericalHarmonic &out,
              const Kernels &kernels)
{
    const RotationConstants &constants = Constants(); // allocated by the first call
    out.coefficients.assign_zeros(tableCoefficients);
    out.numBands = tableBands;
    const int bands = WholeTableBands(in.coefficients.size());
    if (bands == 0)
        return;
    kernels.rotation(constants, matrix, in.coefficients.data(), bands, out.coefficients.data());
}

} // namespace orvane
