#pragma once

// Kernel: the factors cos(m phi) and sin(m phi) that one azimuth gives the orders m of the basis
// functions, as the angle tables hold them.

#include <cstdint>

namespace orvane {

/// The builder's angle tables: `numSteps` (at least 1) entries each.
struct AngleTables {
    const double *cosLut;
    const double *sinLut;
    double angleScale;     ///< table index = trunc(angle * angleScale); above 0
    std::int32_t numSteps; ///< of a full circle
};

/// Indexed by the order m = 0..29. Order 0, which takes no angle factor, has cosine 1 and sine 0:
/// a product with 1.0 is the other factor, bit for bit.
struct alignas(64) AngleFactors {
    double cosine[32];
    double sine[32];
};

/// Fills entries 0 to orders - 1 and leaves the others alone.
///
/// Entry m is the table entry trunc(angleScale * WrapAngle(m * phi)), the last one where that lies
/// beyond the table (a folded angle of just a full turn reaches numSteps for many table sizes).
/// @param phi azimuth in radians, any sign; (orders - 1) * phi is finite
/// @param orders 1 to 30
using AngleFactorsKernel = void (*)(const AngleTables &tables, double phi, int orders,
                                    AngleFactors &factors);

} // namespace orvane
