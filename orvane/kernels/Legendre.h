#pragma once

// Kernel: the associated Legendre functions of 30 bands at theta steps, as one array for each band
// and order and as the normalised rows of the polar table.

#include <cstddef>
#include <cstdint>

namespace orvane {

/// Steps are filled in blocks of this many. All memory has room for whole blocks; what lies behind
/// the last step means nothing.
inline constexpr std::int32_t legendreBlock = 16;

struct LegendreTables {
    const double *cosines;       ///< numSteps values cos theta, -1 to 1
    std::int32_t numSteps;       ///< 1 and up
    const double *normalisation; ///< K(l, m) at index l*l + l + m, 900 values
    /// 465 arrays, one every `stride` values: P(l, m, cos theta), m >= 0, at
    /// LegendrePair(l, m) * stride + step. Filled.
    double *legendre;
    std::ptrdiff_t stride;
    double *polarRows; ///< one for each step, as PolarRow.h lays it out. Filled, padding included.
};

using LegendreKernel = void (*)(const LegendreTables &tables);

} // namespace orvane
