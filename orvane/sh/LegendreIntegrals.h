#pragma once

// Integrals of the associated Legendre functions over zones, which are intervals of cos theta.

#include "orvane/base/PolarRow.h"

#include <array>

namespace orvane {

/// Number of pairs 0 <= m <= l < tableBands.
inline constexpr int legendrePairs = tableBands * (tableBands + 1) / 2;

/// Position of band l and order m >= 0 among the pairs.
constexpr int LegendrePair(int l, int m)
{
    return l * (l + 1) / 2 + m;
}

/// The integrals of P(l, m, x) dx from `lower` to `upper` at LegendrePair(l, m), with P as
/// LegendreP gives it. For zones at least 2^-11 wide the error stays below
/// 4e-13 max(1, max |P(l, m)| (upper - lower)), the maximum taken over the zone.
/// @param lower cos theta, -1 to 1
/// @param upper cos theta, above lower, to 1
std::array<double, legendrePairs> IntegrateLegendre(double lower, double upper);

} // namespace orvane
