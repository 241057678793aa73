#pragma once

// Contiguous rows, one per theta step, of all normalised Legendre values K(l, m) * P(l, m) of 30
// bands. K * P is the same for +m and -m, so a row holds each |m| once:
//
//   order 0: l = 0 1 2 ... 29, 0 0 | order 1: l = 1 2 ... 29, 0 0 0 | ... | order 29: l = 29, 0 ...
//
// Every order's run is padded with zeros to a multiple of 8 values, so that runs start on a 64-byte
// boundary: a point of the sphere is one stream of aligned vectors.

#include "orvane/kernels/AlignedArray.h"

#include <cstddef>

namespace orvane {

/// Bands that the tables cover, l = 0..29.
inline constexpr int tableBands = 30;
/// Coefficient indices that the tables cover.
inline constexpr int tableCoefficients = tableBands * tableBands;

/// Number of bands that have order m (m >= 0): l = m..29.
constexpr int PolarRunLength(int m)
{
    return tableBands - m;
}
constexpr int PolarPaddedRunLength(int m)
{
    return (PolarRunLength(m) + 7) / 8 * 8;
}

struct PolarRunStarts {
    int at[tableBands + 1];
};
inline constexpr PolarRunStarts polarRunStarts = [] {
    PolarRunStarts start{};
    for (int m = 0; m < tableBands; ++m)
        start.at[m + 1] = start.at[m] + PolarPaddedRunLength(m);
    return start;
}();

/// Where the run of order m starts in a row; entry 30 is the length of a row. A plain array, so
/// that kernels may read it: no function of a standard container is called.
inline constexpr const int (&polarRunStart)[tableBands + 1] = polarRunStarts.at;

inline constexpr int polarRowLength = polarRunStart[tableBands];
static_assert(polarRowLength == 576);

/// Position of K(l, |m|) * P(l, |m|) in a row.
constexpr int PolarIndex(int l, int absOrder)
{
    return polarRunStart[absOrder] + l - absOrder;
}

struct PolarTable {
    AlignedArray<double> rows; ///< of polarRowLength values each, from step 0 on

    /// How many steps have a row.
    std::size_t Steps() const { return rows.size() / polarRowLength; }
    const double *Row(std::size_t thetaStep) const
    {
        return rows.data() + thetaStep * polarRowLength;
    }
};

} // namespace orvane
