#pragma once

// The layout of a polar row: all normalised Legendre values K(l, m) * P(l, m) of 30 bands at one
// theta step. K * P is the same for +m and -m, so a row holds each |m| once, in one run for each:
//
//   order 0: l = 0 1 2 ... 29, 0 0 | order 1: l = 1 2 ... 29, 0 0 0 | ... | order 29: l = 29, 0 ...
//
// Every run is padded with zeros to a multiple of 8 values, so that runs start on a 64-byte
// boundary: a point of the sphere is one stream of aligned vectors.

#include "orvane/base/Bands.h"

namespace orvane {

struct PolarRunStarts {
    int at[tableBands + 1];
};
inline constexpr PolarRunStarts polarRunStarts = [] {
    PolarRunStarts start{};
    for (int m = 0; m < tableBands; ++m) {
        const int length = tableBands - m; // l = m..29
        start.at[m + 1] = start.at[m] + (length + 7) / 8 * 8;
    }
    return start;
}();

/// Where the run of order m starts in a row; entry 30 is the length of a row. A plain array: a
/// kernel may read it and call no function of a standard container.
inline constexpr const int (&polarRunStart)[tableBands + 1] = polarRunStarts.at;

inline constexpr int polarRowLength = polarRunStart[tableBands];
static_assert(polarRowLength == 576);

/// Position of K(l, |m|) * P(l, |m|) in a row. Always inlined, as CoefficientIndex is.
[[gnu::always_inline]] constexpr int PolarIndex(int l, int absOrder)
{
    return polarRunStart[absOrder] + l - absOrder;
}

} // namespace orvane
