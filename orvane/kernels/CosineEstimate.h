#pragma once

// Kernel: about how far points of the sphere are from a direction, without a library call.

namespace orvane {

/// Points taken at a time.
inline constexpr int cosineBlock = 64;

/// No estimate is further than this from the cosine of the true angle.
inline constexpr double cosineEstimateError = 1e-6;

/// A unit vector (cos phi sin theta, cos theta, sin phi sin theta).
struct Direction {
    double x;
    double y;
    double z;
};

struct alignas(64) CosineBlock {
    double theta[cosineBlock];
    double phi[cosineBlock];
    double cosine[cosineBlock];
};

/// Fills `cosine` of every point: an estimate of the cosine of the angle between `direction` and
/// the point at (phi, theta); NaN where theta lies outside [0, pi] or phi outside [0, 2 pi] (by
/// more than about 0.01).
using CosineEstimateKernel = void (*)(const Direction &direction, CosineBlock &block);

} // namespace orvane
