#pragma once

// Job: renders a coefficient set into one tile of an 8-bit image.
//
// The pixel of column x, row y stands for the point phi = x * dPhi, theta = y * dTheta. With v the
// set's value there, summed in double in index order over the lookup tables, its byte is
//
//   clamp(trunc(v * scale) + offset, 0, 255)
//
// where trunc saturates to 32 bits and gives 0 for NaN.

#include "orvane/kernels/AngleFactors.h"
#include "orvane/kernels/PolarTable.h"

#include <cstddef>
#include <cstdint>

namespace orvane {

/// Working memory of one render: fixed in size, about 0.5 MB; its contents mean nothing before or
/// after. Values per order have the layout of AngleFactors.
struct RenderScratch {
    static constexpr int maxRows = 512;
    static constexpr int maxColumns = 64;
    static constexpr int ordersLength = sizeof(AngleFactors) / sizeof(double);

    /// One summand of a value: coefficient * (polar row entry * angle factor).
    struct Term {
        double coefficient;
        std::int32_t polarIndex;
        std::int32_t factorIndex;
    };

    // Per call: the set.
    alignas(64) double cosineCoefficients[polarRowLength]; ///< scaled, m >= 0, as a polar row
    alignas(64) double sineCoefficients[polarRowLength];   ///< scaled, m < 0, as a polar row
    Term terms[tableCoefficients];                         ///< in index order

    // Per block of rows.
    const double *polarRows[maxRows];
    std::int32_t firstRows[maxRows + 1]; ///< first image row; the next entry's is one past the last
    alignas(64) AngleFactors rowSums[maxRows];
    alignas(64) float narrowRowSums[maxRows][ordersLength];
    float rowBounds[maxRows];

    // Per tile of columns.
    AngleFactors columnFactors[maxColumns];
    alignas(64) float narrowColumnFactors[ordersLength][maxColumns];
};

struct RenderJob {
    AngleTables angles;
    const double *polarRows; ///< numSteps rows of polarRowLength values

    const float *coefficients; ///< in index order
    std::int32_t count;        ///< of coefficients that make the value, 1 to 900
    float scale;
    std::int32_t offset;

    std::uint8_t *image; ///< rows of `imageWidth` bytes, the whole image
    std::ptrdiff_t imageWidth;
    std::int32_t firstColumn, columns; ///< columns >= 0
    std::int32_t firstRow, rows;       ///< rows >= 0
    double dPhi, dTheta;               ///< radians per column and row; every theta has a polar row

    RenderScratch *scratch;
};

/// How many pixels the first, single-precision bound could not decide. Rows that share their polar
/// row share their pixels, which count once.
struct RenderCounts {
    std::int64_t rechecked; ///< decided by the bound of the double-precision value
    std::int64_t exact;     ///< computed term by term
};

using RenderKernel = RenderCounts (*)(const RenderJob &job);

} // namespace orvane
