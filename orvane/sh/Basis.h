#pragma once

// Real spherical-harmonic basis functions: what a coefficient index means, their normalisation and
// polar factor, and how angles become table indices.
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

#include "orvane/kernels/PolarTable.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>

namespace orvane {

/// Index of the coefficient of band l, order m.
constexpr int CoefficientIndex(int l, int m)
{
    return l * l + l + m;
}

/// Number of coefficients of a set of `bands` bands: the square as a wrapping 32-bit product, so
/// that it may be anything where the true square needs more (65,536 bands give 0).
constexpr std::int32_t CoefficientCount(std::int32_t bands)
{
    const auto value = static_cast<std::uint32_t>(bands);
    return static_cast<std::int32_t>(value * value);
}

/// The most bands that a set can have: the last count whose square fits in 32 signed bits.
inline constexpr std::int32_t mostSetBands = 46340;

/// Number of bands, at most 30, that an array of `count` coefficients holds completely.
constexpr int WholeTableBands(std::size_t count)
{
    int bands = 0;
    while (bands < tableBands && static_cast<std::size_t>(CoefficientCount(bands + 1)) <= count)
        ++bands;
    return bands;
}

/// The bands that the first `count` coefficients reach into, the last one perhaps in part.
/// @param count at most 900
constexpr int BandsReached(std::int32_t count)
{
    const int whole = WholeTableBands(count);
    return CoefficientCount(whole) < count ? whole + 1 : whole;
}

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

/// Index of the table step that an angle in radians falls into; the caller folds and bounds.
constexpr std::int32_t TableIndex(double angleScale, double angle)
{
    return TruncateToInt32(angleScale * angle);
}

} // namespace orvane
