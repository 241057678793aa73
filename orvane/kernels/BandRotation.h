#pragma once

// Kernel: the rotation of the whole bands of a set by a 3 x 3 matrix, through the recurrence of
//
//   J. Ivanic and K. Ruedenberg, "Rotation Matrices for Real Spherical Harmonics. Direct
//   Determination by Recursion", J. Phys. Chem. 100 (1996) 6342, with the corrections of 102 (1998)
//   9099.

#include "orvane/base/Bands.h"

namespace orvane {

/// The coefficients u, v, w of the recurrence: constants of band l = 2..29, order m and column n.
/// They are even in m and n.
struct RotationConstants {
    static constexpr int blockColumns = 8;
    static constexpr int blocks = 4;
    static constexpr int edgeOrders = 40;

    /// For columns n = 8 k to 8 k + 7 of band l, n < l: the vectors u, v, w over the columns for
    /// each m = 0..l in turn. Columns from l on are 0. Null where k has no column below l.
    const double *columns[blocks][tableBands];
    /// For the outermost columns n = -l and l: u, then v, then w, each over m = 0..39; orders
    /// above l are 0.
    const double *edges[tableBands];
};

/// @param matrix rows and columns x, y, z, acting on row vectors; any values
/// @param in single-precision coefficients of `bands` whole bands
/// @param bands 1 to 30
/// @param out as many coefficients
using RotationKernel = void (*)(const RotationConstants &constants, const double (*matrix)[3],
                                const float *in, int bands, float *out);

} // namespace orvane
