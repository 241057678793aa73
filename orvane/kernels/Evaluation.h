#pragma once

// Kernel: the value of a coefficient set at one point of the sphere.

#include "orvane/kernels/AngleFactors.h"

#include <cstdint>

namespace orvane {

/// The sum of coefficient * term over the first `count` coefficients, in double and in index order.
/// @param coefficients single-precision, at least `count`
/// @param count 0 to 900
/// @param polarRow the polar table's row of the point's theta step
/// @param factors of the point's azimuth, for every order that the coefficients reach
using EvaluationKernel = double (*)(const float *coefficients, std::int32_t count,
                                    const double *polarRow, const AngleFactors &factors);

} // namespace orvane
