#include "orvane/builder/Random.h"

#include "orvane/builder/SHBuilder.h"
#include "orvane/sh/Constants.h"

#include <cmath>

namespace orvane {

double RandomUnit(platform::RuntimeRandom &random)
{
    constexpr double drawScale = 1.0 / 32767.0;
    static_assert(drawScale == 3.051850947599719e-05);
    return random.Next() * drawScale;
}

double RandomGauss(platform::RuntimeRandom &random)
{
    for (;;) {
        const double a = RandomUnit(random) * 2.0 - 1.0;
        const double b = RandomUnit(random) * 2.0 - 1.0;
        const double s = b * b + a * a; // never 0: no draw gives a or b = 0
        if (s < 1.0)
            return std::sqrt(std::log10(s) * -2.0 / s) * b;
    }
}

double GaussDensity(double x, double mean, double stdDev)
{
    const double d = x - mean;
    const double q = d * d / (stdDev * 2.0 * stdDev);
    return std::exp(-q) * (1.0 / (stdDev * SQRT_TWO_PI_F));
}

} // namespace orvane

/// Seeds the calling thread's generator, which all builders share.
void SHBuilder::SetRandomSeed(std::int32_t seed)
{
    platform::srand(static_cast<std::uint32_t>(seed));
}

/// GaussDensity for scripts.
double SHBuilder::GetGaussDensity(const double &x, const double &mean, const double &stdDev)
{
    return orvane::GaussDensity(x, mean, stdDev);
}
