#pragma once

// Random draws over the runtime's generator, and the Gaussian density.
//
// Source: W. H. Press et al., "Numerical Recipes in C", 2nd ed., section 7.2 (polar method).

#include "platform/RuntimeRandom.h"

namespace orvane {

/// One draw, uniform in [0, 1]; both ends are reached.
double RandomUnit(platform::RuntimeRandom &random = platform::ThreadRandom());

/// A normal deviate from two or more draws. The logarithm is the decimal one, so the standard
/// deviation is 1 / sqrt(ln 10), about 0.659.
double RandomGauss(platform::RuntimeRandom &random = platform::ThreadRandom());

/// Density at `x` of the normal distribution with this mean and standard deviation, its sqrt(2 pi)
/// rounded to single precision. NaN for a standard deviation of 0, negative for a negative one.
double GaussDensity(double x, double mean, double stdDev);

} // namespace orvane
