#pragma once

// Rotation of coefficient sets. Rotations never mix bands, so each band is multiplied by a matrix
// of its own.

#include "orvane/kernels/Kernels.h"

class SphericalHarmonic;

namespace orvane {

/// Rotates about the polar axis: the value of `out` at azimuth phi is that of `in` at phi + angle.
/// With a = angle, the coefficients c of each band become, for m = 1..l,
///
///   out(-m) = cos(m a) c(-m) - sin(m a) c(m)
///   out(m)  = cos(m a) c(m) + sin(m a) c(-m)
///
/// and out(0) = c(0), the multiples of the angle by the Chebyshev recurrence
/// cos(k a) = 2 cos a cos((k - 1) a) - cos((k - 2) a), which holds for the sine too.
///
/// Works on the first 30 bands; coefficients of bands above are 0, as are those that the array of
/// `in` lacks for its band count.
/// @param angle radians; it is never folded, and a non-finite one makes every coefficient of
/// order m != 0 NaN
/// @param out another set than `in`; gets its band count
/// @throws std::invalid_argument where the wrapping square of the band count is negative
/// @throws std::bad_alloc
/// `out` is then unchanged.
void RotateZ(const SphericalHarmonic &in, double angle, SphericalHarmonic &out);

/// Rotates by a matrix that acts on row vectors (x, y, z) from the right, the pole being z: band 1,
/// read as (in[3], in[1], in[2]), becomes that vector times the matrix, and higher bands follow.
/// The matrix should be orthonormal; any other is taken as it is, with meaningless higher bands.
/// Follows the whole bands of the array of `in`, whatever its band count says.
/// @param out another set than `in`; gets 30 bands, those that `in` lacks being 0
/// @param kernels the processor's best where nothing is said
/// @throws std::bad_alloc with `out` unchanged
void RotateSH(const SphericalHarmonic &in, const double matrix[3][3], SphericalHarmonic &out,
              const Kernels &kernels = BestKernels());

} // namespace orvane
