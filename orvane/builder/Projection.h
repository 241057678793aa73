#pragma once

// The quadrature points of every projection, and what a projection does with them.

#include "orvane/builder/SHBuilder.h"
#include "orvane/kernels/CosineEstimate.h"

#include <cstdint>
#include <vector>

namespace orvane {

/// The most samples per axis: 4 GB of samples.
inline constexpr std::int32_t mostSamplesPerAxis = 16384;

/// @throws std::invalid_argument above it
void RequireSampleLimit(std::int32_t sqrtNumSamples);

/// Replaces `target` by n * n jittered samples, row by row in theta and uniform in area, each from
/// two draws, theta's first; none for n below 1. Draws from the thread's generator as it stands. A
/// phi may lie a hair above 2 pi.
/// @param n samples per axis, at most mostSamplesPerAxis
/// @throws std::bad_alloc where target has no room reserved; nothing is drawn then
void GenerateStratifiedSamples(std::int32_t n, std::vector<SphericalSample> &target);

/// What each sample stands for: 4 pi / number of samples, in single precision; infinite for none.
float SampleWeight(const SHBuilder &builder);

/// A Gaussian blob on the sphere.
struct GaussParams {
    /// Mean at polar angle `latitude` and azimuth `longitude`, deviation in radians.
    GaussParams(double stdDev, double latitude, double longitude);

    Direction mean;
    double stdDev;
    double peakScale; ///< makes the value at the mean 1
};

/// The blob's value at a point: of the angle to the mean, and 0 beyond five standard deviations.
double GaussValue(const GaussParams &params, double phi, double theta);

/// The estimated cosines (CosineEstimate.h) for which GaussValue is exactly 0.0 for certain.
class GaussReach {
public:
    explicit GaussReach(double stdDev);

    bool IsBeyond(double estimatedCosine) const
    {
        return estimatedCosine > lowest && estimatedCosine < highest;
    }

private:
    double lowest;
    double highest;
};

} // namespace orvane
