#pragma once

// Random draws over the runtime's generator, and the Gaussian density. A generator is a
// platform::ThreadDraws or, where the sequence must be a loop's own, a platform::RuntimeRandom.
//
// Source: W. H. Press et al., "Numerical Recipes in C", 2nd ed., section 7.2 (polar method).

#include "platform/RuntimeRandom.h"

#include <cmath>

namespace orvane {

/// One draw, uniform in [0, 1]; both ends are reached.
template <class Generator> double RandomUnit(Generator &random)
{
    constexpr double drawScale = 1.0 / 32767.0;
    static_assert(drawScale == 3.051850947599719e-05);
    return random.Next() * drawScale;
}

/// A point drawn uniformly inside the unit circle, from two or more draws.
struct DiskPoint {
    double b;             ///< its second coordinate
    double squaredRadius; ///< above 0, below 1
};
template <class Generator> DiskPoint RandomDiskPoint(Generator &random)
{
    for (;;) {
        const double a = RandomUnit(random) * 2.0 - 1.0;
        const double b = RandomUnit(random) * 2.0 - 1.0;
        const double s = b * b + a * a; // never 0: no draw gives a or b = 0
        if (s < 1.0)
            return {b, s};
    }
}

/// The normal deviate that such a point stands for. The logarithm is the decimal one, so the
/// standard deviation is 1 / sqrt(ln 10), about 0.659.
inline double GaussDeviate(const DiskPoint &point)
{
    return std::sqrt(std::log10(point.squaredRadius) * -2.0 / point.squaredRadius) * point.b;
}

/// Density at `x` of the normal distribution with this mean and standard deviation, its sqrt(2 pi)
/// rounded to single precision. NaN for a standard deviation of 0, negative for a negative one.
double GaussDensity(double x, double mean, double stdDev);

} // namespace orvane
