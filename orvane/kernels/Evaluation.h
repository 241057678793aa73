#pragma once

// Kernel: the value of a coefficient set at one point of the sphere.

#include "orvane/kernels/AngleTables.h"

#include <cstdint>

namespace orvane {

/// The sum of coefficient * term over the first `count` coefficients, in double and in index order.
/// @param phi azimuth in radians, any sign; (bands - 1) * phi is finite
/// @param polarRow the polar table's row of the point's theta step
/// @param coefficients single-precision, at least `count`
/// @param count 1 to 900
/// @param bands 1 to 30, which `count` reaches into
using EvaluationKernel = double (*)(const AngleTables &tables, double phi, const double *polarRow,
                                    const float *coefficients, std::int32_t count, int bands);

} // namespace orvane
