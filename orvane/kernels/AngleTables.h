#pragma once

// The angle tables, from which kernels take the factors cos(m phi) and sin(m phi) of the orders m:
// the entries trunc(angleScale * WrapAngle(m * phi)), the last one where that lies beyond the table
// (a folded angle of just a full turn reaches numSteps for many table sizes).

#include <cstdint>

namespace orvane {

/// Tables of `numSteps` (at least 1) entries each; LookUpTables owns them.
struct AngleTables {
    const double *cosLut;
    const double *sinLut;
    double angleScale;     ///< table index = trunc(angle * angleScale); above 0
    std::int32_t numSteps; ///< of a full circle
};

} // namespace orvane
