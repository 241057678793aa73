#include "orvane/builder/SphereSamples.h"

#include "orvane/base/Constants.h"
#include "orvane/builder/Random.h"

#include <algorithm>
#include <cmath>

namespace orvane {

// R. Green, "Spherical Harmonic Lighting: The Gritty Details", GDC 2003, appendix A1: theta is
// 2 acos(sqrt(1 - x)) for x uniform in [0, 1].
void GenerateStratifiedSamples(std::int32_t n, std::vector<SphericalSample> &target)
{
    target.clear();
    if (n < 1)
        return;
    target.reserve(static_cast<std::size_t>(n) * static_cast<std::size_t>(n));
    const double inv = 1.0f / static_cast<float>(n);
    platform::ThreadDraws random;
    for (std::int32_t i = 0; i < n; ++i)
        for (std::int32_t j = 0; j < n; ++j) {
            // Where inv is above 1/n, the last row can reach beyond the pole by a hair.
            const double rest = std::max(1.0 - (RandomUnit(random) + i) * inv, 0.0);
            const double theta = std::acos(std::sqrt(rest)) * 2.0;
            const double phi = (RandomUnit(random) + j) * inv * TWO_PI_F;
            target.push_back({theta, phi});
        }
}

} // namespace orvane
