#include "orvane/builder/GaussBlob.h"

#include "orvane/base/Constants.h"
#include "orvane/builder/Random.h"

#include <algorithm>
#include <cmath>

namespace orvane {

GaussBlob::GaussBlob(double stdDev, double latitude, double longitude)
    : stdDev(stdDev), peakScale(1.0 / GaussDensity(0.0, 0.0, stdDev))
{
    const double sinLatitude = std::sin(latitude);
    mean.x = std::cos(longitude) * sinLatitude;
    mean.z = std::sin(longitude) * sinLatitude;
    mean.y = std::cos(latitude);
}

double GaussBlob::Value(double phi, double theta) const
{
    const double sinTheta = std::sin(theta);
    const double x = std::cos(phi) * sinTheta;
    const double z = std::sin(phi) * sinTheta;
    const double y = std::cos(theta);
    const double c = (y * mean.y + x * mean.x) + z * mean.z;
    const double angle = std::acos(c);
    if (angle > stdDev * 5.0)
        return 0.0;
    return GaussDensity(angle, 0.0, stdDev) * peakScale;
}

// Value is 0.0 where the library's acos(c) is above limit = stdDev * 5.0, c being the scalar
// product as computed. An estimate e is within 1e-6 of the true cosine, and c within some 1e-15, so
// e < cos(limit + slack) - 2e-6 says that the true acos(c) is above limit + slack, far more than
// the library's acos is off. Past pi there is no such angle. For a limit below 0 the angle 0 will
// do.
//
// A c just outside [-1, 1] has no angle: the value is NaN, not 0. That is why the ends are left
// out.
GaussReach::GaussReach(double stdDev) : lowest(-1.0 + 2.0 * cosineEstimateError), highest(-1.0)
{
    constexpr double slack = 1e-6;
    const double angle = std::max(stdDev * 5.0, 0.0) + slack;
    if (angle < PI_F - slack)
        highest = std::cos(angle) - 2.0 * cosineEstimateError;
}

} // namespace orvane
