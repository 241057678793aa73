#pragma once

// Kernel: the associated Legendre functions of 30 bands at every theta step as one array per
// coefficient index, and the normalised rows of the polar table for the first of the steps.

#include <cstdint>

namespace orvane {

struct LegendreTables {
    const double *cosines;       ///< numSteps values cos theta, -1 to 1
    std::int32_t numSteps;       ///< 1 and up
    const double *normalisation; ///< K(l, m) at index l*l + l + m, 900 values
    double *const *legendre;     ///< 900 arrays of numSteps: P(l, |m|, cos theta); filled
    double *polarRows;           ///< polarSteps rows as PolarRow.h lays them out; filled, but
                                 ///< their padding must be zero before
    std::int32_t polarSteps;     ///< 0 to numSteps
};

using LegendreKernel = void (*)(const LegendreTables &tables);

} // namespace orvane
