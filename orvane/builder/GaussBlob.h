#pragma once

// A Gaussian on the sphere, over the angle to its mean.

#include "orvane/kernels/CosineEstimate.h"

namespace orvane {

/// exp(-d^2 / (2 stdDev^2)) with d the angle to the mean, 0 for d > 5 stdDev.
struct GaussBlob {
    /// @param stdDev standard deviation in radians, any number
    /// @param latitude polar angle of the mean in radians
    /// @param longitude azimuth of the mean in radians
    GaussBlob(double stdDev, double latitude, double longitude);

    /// The value at a point; all of it as the formula gives it, NaN where that does.
    /// @param phi azimuth in radians
    /// @param theta polar angle in radians
    double Value(double phi, double theta) const;

    Direction mean;
    double stdDev;
    double peakScale; ///< 1 / density at the mean
};

/// Where a blob is 0, told by estimated cosines (CosineEstimate.h).
class GaussReach {
public:
    /// @param stdDev of the blob, in radians
    explicit GaussReach(double stdDev);

    /// True only where GaussBlob::Value is sure to return 0.0.
    /// @param estimatedCosine of the angle between the mean and a point
    bool IsSurelyZero(double estimatedCosine) const
    {
        return estimatedCosine > lowest && estimatedCosine < highest;
    }

private:
    double lowest;
    double highest;
};

} // namespace orvane
