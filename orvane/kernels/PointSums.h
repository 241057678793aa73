#pragma once

// Kernel: adding weighted points of the sphere to the coefficients of every basis function, the
// inner loop of every projection.

#include "orvane/base/PolarRow.h"
#include "orvane/kernels/AngleTables.h"

#include <cstddef>
#include <cstdint>

namespace orvane {

/// One point of the sphere and the function's value there.
struct ProjectionPoint {
    double phi; ///< azimuth in radians; 29 * phi is finite
    double value;
    std::int32_t thetaStep; ///< row of the polar table, 0 to numSteps - 1
};

/// Running sums in the layout of a polar table's row: orders m >= 0 in `cosine`, m < 0 at |m| in
/// `sine` (whose run of order 0, and all padding, means nothing).
struct alignas(64) ProjectionSums {
    float cosine[polarRowLength];
    float sine[polarRowLength];
};

struct ProjectionTables {
    AngleTables angles;
    const double *polarRows;
};

/// Adds `count` points, one after the other, to the sums of the coefficients of `bands` bands. With
/// b the basis value in double, (K P) * angle factor, one point changes a sum to either of
///
///   weighted:  (float)(b * value) + sum
///   pixels:    sum + (float)b * (float)value
///
/// @param bands 1 to 30
using PointSumsKernel = void (*)(const ProjectionTables &tables, const ProjectionPoint *points,
                                 std::size_t count, int bands, ProjectionSums &sums);

} // namespace orvane
