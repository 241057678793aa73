#pragma once

// What a coefficient index means.
//
// A set of B bands has the bands l = 0..B-1, and band l the orders m = -l..l: B * B coefficients,
// band by band, and each band by ascending order.

#include <cstddef>
#include <cstdint>

namespace orvane {

/// Bands that the lookup tables cover, l = 0..29.
inline constexpr int tableBands = 30;
/// Coefficient indices that the lookup tables cover.
inline constexpr int tableCoefficients = tableBands * tableBands;

// The functions that kernels call are always inlined: a function that the linker keeps once for the
// whole program could be the one compiled for a processor that is not there.

/// Index of the coefficient of band l, order m.
[[gnu::always_inline]] constexpr int CoefficientIndex(int l, int m)
{
    return l * l + l + m;
}

/// Number of pairs 0 <= m <= l < tableBands.
inline constexpr int legendrePairs = tableBands * (tableBands + 1) / 2;

/// Position of band l and order m >= 0 among the pairs.
[[gnu::always_inline]] constexpr int LegendrePair(int l, int m)
{
    return l * (l + 1) / 2 + m;
}

/// Number of coefficients of a set of `bands` bands: the square as a wrapping 32-bit product, so
/// that it may be anything where the true square needs more (65,536 bands give 0).
constexpr std::int32_t CoefficientCount(std::int32_t bands)
{
    const auto value = static_cast<std::uint32_t>(bands);
    return static_cast<std::int32_t>(value * value);
}

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

} // namespace orvane
