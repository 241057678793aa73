#include "orvane/builder/Random.h"

#include "orvane/base/Constants.h"

#include <cmath>

namespace orvane {

double GaussDensity(double x, double mean, double stdDev)
{
    const double d = x - mean;
    const double q = d * d / (stdDev * 2.0 * stdDev);
    return std::exp(-q) * (1.0 / (stdDev * SQRT_TWO_PI_F));
}

} // namespace orvane
