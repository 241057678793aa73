#include "orvane/builder/Random.h"

#include "orvane/base/Constants.h"
#include "orvane/builder/SHBuilder.h"

#include <cmath>

namespace orvane {

double GaussDensity(double x, double mean, double stdDev)
{
    const double d = x - mean;
    const double q = d * d / (stdDev * 2.0 * stdDev);
    return std::exp(-q) * (1.0 / (stdDev * SQRT_TWO_PI_F));
}

} // namespace orvane

void SHBuilder::SetRandomSeed(std::int32_t seed)
{
    platform::srand(static_cast<std::uint32_t>(seed));
}

double SHBuilder::GetGaussDensity(const double &x, const double &mean, const double &stdDev)
{
    return orvane::GaussDensity(x, mean, stdDev);
}
