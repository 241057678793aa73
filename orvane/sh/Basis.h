#pragma once

// Real spherical-harmonic basis functions: their normalisation and polar factor, and how angles are
// folded and truncated.
//
// The function of band l >= 0 and order m, -l <= m <= l, at azimuth phi (0 to 2 pi) and polar angle
// theta (0 to pi from the pole), in radians:
//
//   m > 0:  K(l, m) P(l, m, cos theta) cos(m phi)
//   m = 0:  K(l, 0) P(l, 0, cos theta)
//   m < 0:  K(l, m) P(l, |m|, cos theta) sin(|m| phi)
//
// P carries the sign (-1)^m of the Condon-Shortley convention.
//
// Sources, cited below by number:
//   [1] R. Green, "Spherical Harmonic Lighting: The Gritty Details", GDC 2003.
//   [2] W. H. Press et al., "Numerical Recipes in C", 2nd ed., section 6.8.

#include "orvane/base/Bands.h"

#include <array>
#include <cstdint>
#include <limits>

namespace orvane {

/// K(l, m) at CoefficientIndex(l, m), the sqrt(2) of the real functions of m != 0 included.
const std::array<double, tableCoefficients> &NormalisationTable();

/// Associated Legendre function P(l, m, x) with its sign (-1)^m; 0 where l < m. For single values:
/// the tables come out of one pass over all of them.
/// @param l 0 and up
/// @param m 0 and up
/// @param x cos theta, -1 to 1
double LegendreP(int l, int m, double x);

/// Folds a finite angle into [0, TWO_PI_F] by whole turns of TWO_PI_F. A positive angle that is a
/// whole number of turns becomes TWO_PI_F, a negative one +0.
double WrapAngle(double angle);

/// Truncates toward zero and saturates; NaN gives 0.
constexpr std::int32_t TruncateToInt32(double value)
{
    constexpr std::int32_t low = std::numeric_limits<std::int32_t>::min();
    constexpr std::int32_t high = std::numeric_limits<std::int32_t>::max();
    if (value >= high)
        return high;
    if (value <= low)
        return low;
    return value == value ? static_cast<std::int32_t>(value) : 0;
}

} // namespace orvane
